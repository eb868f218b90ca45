#pragma once

#include "Platform/StreamDriver.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <vector>

namespace LmComTesting
{

/** A stream driver that records every request exactly as it was asked, and answers with
    whatever the test decides. */
class RecordingDriver : public Platform::StreamDriver
{
public:
    struct Request
    {
        juce::String device;
        juce::uint32 code = 0;
        std::vector<unsigned char> in;
        size_t outSize = 0;
    };

    /** Decides a request's fate; may fill the output. Default: every request succeeds. */
    std::function<bool(const Request&, void* out, size_t outSize, const void* in)> answer;
    /** Devices that open; empty: every name opens. */
    std::vector<juce::String> present;

    std::vector<Request> requests() const
    {
        std::lock_guard<std::mutex> lock(m_lock);
        return m_requests;
    }
    std::vector<juce::String> opened() const
    {
        std::lock_guard<std::mutex> lock(m_lock);
        return m_opened;
    }
    int openHandles() const
    {
        std::lock_guard<std::mutex> lock(m_lock);
        return m_openHandles;
    }

    std::unique_ptr<Platform::StreamDevice> open(const juce::String& name) override
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_opened.push_back(name);
        if (!present.empty() && std::find(present.begin(), present.end(), name) == present.end())
            return nullptr;
        ++m_openHandles;
        return std::make_unique<Device>(*this, name);
    }

    /** Installs a new recording driver for a kind of device; it stays until the process ends. */
    static std::shared_ptr<RecordingDriver> install(Kind kind)
    {
        auto driver = std::make_shared<RecordingDriver>();
        Platform::StreamDriver::install(kind, driver);
        return driver;
    }

private:
    class Device : public Platform::StreamDevice
    {
    public:
        Device(RecordingDriver& driver, juce::String name) : m_driver(driver), m_name(std::move(name)) {}
        ~Device() override
        {
            std::lock_guard<std::mutex> lock(m_driver.m_lock);
            --m_driver.m_openHandles;
        }
        bool ioControl(juce::uint32 code, const void* in, size_t inSize, void* out, size_t outSize) override
        {
            Request request{m_name, code, {}, outSize};
            if (in != nullptr)
                request.in.assign(static_cast<const unsigned char*>(in),
                                  static_cast<const unsigned char*>(in) + inSize);
            {
                std::lock_guard<std::mutex> lock(m_driver.m_lock);
                m_driver.m_requests.push_back(request);
            }
            return m_driver.answer ? m_driver.answer(request, out, outSize, in) : true;
        }
        bool write(const void*, size_t) override { return false; }

    private:
        RecordingDriver& m_driver;
        juce::String m_name;
    };

    mutable std::mutex m_lock;
    std::vector<Request> m_requests;
    std::vector<juce::String> m_opened;
    int m_openHandles = 0;
};

} // namespace LmComTesting
