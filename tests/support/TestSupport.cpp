#include "support/TestSupport.h"

#include "Platform/BusFolder.h"
#include "Platform/BusStatistics.h"
#include "Platform/SettingsSegment.h"
#include "Platform/SharedMemory.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <future>
#include <map>
#include <thread>

namespace LmComTesting
{

namespace
{
std::atomic<int> sTestCounter{0};

std::map<std::string, ChildRole>& roles()
{
    static std::map<std::string, ChildRole> table;
    return table;
}

void* fakeLogcat()
{
    // The library is loaded by the code under test; only look it up here.
    return dlopen(LMCOM_FAKE_LOGCAT, RTLD_NOW | RTLD_NOLOAD);
}
} // namespace

void LmComTest::SetUp()
{
    char pattern[] = "/tmp/lmcom-test-XXXXXX";
    const char* made = mkdtemp(pattern);
    ASSERT_NE(made, nullptr);
    m_root = juce::File(made);
    m_bus = "t" + juce::String(getpid()) + "_" + juce::String(sTestCounter++);
    setenv("LMCOM_ROOT", made, 1);
    setenv("LMCOM_BUS", m_bus.toRawUTF8(), 1);
    installFakeLogcat(m_root);
}

void LmComTest::TearDown()
{
    if (m_root.isDirectory())
        m_root.deleteRecursively();
    // The bus's ring, its statistics, its settings and its folder go with the test.
    shm_unlink(Platform::SharedMemory::systemNameFor("LmIPCMsgShareMem").toRawUTF8());
    shm_unlink(Platform::BusStatistics::systemName().toRawUTF8());
    shm_unlink(Platform::SettingsSegment::systemName().toRawUTF8());
    // std::filesystem, not juce::File: JUCE takes a socket for a folder and would leave it.
    std::error_code ignored;
    std::filesystem::remove_all(Platform::BusFolder::path().toStdString(), ignored);
}

juce::File LmComTest::systemFile(const juce::String& systemPath) const
{
    return juce::File(m_root.getFullPathName() + systemPath.replaceCharacter('\\', '/'));
}

void LmComTest::writeSystemFile(const juce::String& systemPath, const juce::String& content) const
{
    auto file = systemFile(systemPath);
    file.getParentDirectory().createDirectory();
    ASSERT_TRUE(file.replaceWithText(content));
}

void installFakeLogcat(const juce::File& root)
{
    auto bin = root.getChildFile("NandFlash/Application/Bin");
    bin.createDirectory();
    symlink(LMCOM_FAKE_LOGCAT, bin.getChildFile("libQN_Logcat.so").getFullPathName().toRawUTF8());
}

std::vector<std::string> LogLines::all()
{
    std::vector<std::string> lines;
    void* library = fakeLogcat();
    if (library == nullptr)
        return lines;
    auto count = reinterpret_cast<int (*)()>(dlsym(library, "FakeLogcat_count"));
    auto line = reinterpret_cast<int (*)(int, char*, int)>(dlsym(library, "FakeLogcat_line"));
    char buffer[4096];
    for (int i = 0, n = count(); i < n; ++i)
        if (line(i, buffer, sizeof buffer) >= 0)
            lines.emplace_back(buffer);
    dlclose(library);
    return lines;
}

void LogLines::clear()
{
    if (void* library = fakeLogcat())
    {
        reinterpret_cast<void (*)()>(dlsym(library, "FakeLogcat_clear"))();
        dlclose(library);
    }
}

int LogLines::count(const std::string& wanted)
{
    int n = 0;
    for (auto& line : all())
        n += line == wanted ? 1 : 0;
    return n;
}

std::string hex(const void* data, int size)
{
    std::string text;
    auto* bytes = static_cast<const unsigned char*>(data);
    for (int i = 0; i < size; ++i)
    {
        char part[4];
        std::snprintf(part, sizeof part, "%02X", bytes[i]);
        if (i > 0)
            text += ' ';
        text += part;
    }
    return text;
}

std::vector<unsigned char> unhex(const std::string& text)
{
    std::vector<unsigned char> bytes;
    std::string digits;
    for (char c : text)
        if (std::isxdigit((unsigned char)c))
            digits += c;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back((unsigned char)std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}

Parcel::Ptr parcelOf(const std::string& hexText)
{
    auto bytes = unhex(hexText);
    auto parcel = Parcel::obtain();
    parcel->fillData(bytes.data(), (int)bytes.size());
    return parcel;
}

std::string bytesOf(const Parcel::Ptr& parcel)
{
    return hex(parcel->data(), parcel->dataSize());
}

bool registerChildRole(const std::string& name, ChildRole role)
{
    roles()[name] = std::move(role);
    return true;
}

int runChildRole(const std::string& name, const std::vector<std::string>& args)
{
    auto it = roles().find(name);
    if (it == roles().end())
    {
        std::fprintf(stderr, "unknown child role %s\n", name.c_str());
        return 127;
    }
    return it->second(args);
}

bool finishesWithin(int timeoutMs, std::function<void()> work)
{
    auto done = std::make_shared<std::promise<void>>();
    auto finished = done->get_future();
    std::thread(
        [done, work = std::move(work)]
        {
            work();
            done->set_value();
        })
        .detach();
    return finished.wait_for(std::chrono::milliseconds(timeoutMs)) == std::future_status::ready;
}

} // namespace LmComTesting
