#include "Utils/CSerialInternalEx.h"

#include <condition_variable>
#include <mutex>
#include <thread>

struct CSerialInternalEx::Listener
{
    // Held by the thread whenever it touches its owner; released only around the callback.
    std::mutex hold;
    std::unique_lock<std::mutex>* held = nullptr;
    bool abandoned = false; // under `hold`: the owner may be gone
    std::atomic<bool> stopping{false};

    std::mutex doneLock;
    std::condition_variable doneSignal;
    bool done = false;

    std::thread thread;
    char buffer[256] = {};
};

thread_local CSerialInternalEx::Listener* CSerialInternalEx::tListener = nullptr;

CSerialInternalEx::~CSerialInternalEx()
{
    stopListener(2000);
}

int CSerialInternalEx::open(const juce::String& device, unsigned inQueue, unsigned outQueue, bool startListener)
{
    const int error = CSerialInternal::open(device, inQueue, outQueue, false);
    if (error != 0)
        return error;
    if (startListener)
        if (const int started = this->startListener())
            return started;
    return m_lastError;
}

int CSerialInternalEx::close()
{
    stopListener();
    return CSerialInternal::close();
}

int CSerialInternalEx::startListener()
{
    m_lastError = 0;
    if (m_listener != nullptr)
        return 0;
    auto listener = std::make_shared<Listener>();
    m_port.resume();
    try
    {
        listener->thread = std::thread(&CSerialInternalEx::listen, listener, this);
    }
    catch (const std::system_error& error)
    {
        return fail(error.code().value());
    }
    m_listener = std::move(listener);
    return 0;
}

int CSerialInternalEx::stopListener(unsigned timeout)
{
    auto listener = std::move(m_listener);
    if (listener == nullptr)
        return 0;
    listener->stopping = true;
    m_port.cancel();

    bool finished = false;
    if (listener->thread.get_id() != std::this_thread::get_id()) // a callback may close its port
    {
        std::unique_lock<std::mutex> lock(listener->doneLock);
        auto isDone = [&] { return listener->done; };
        if (timeout == kInfinite)
            listener->doneSignal.wait(lock, isDone);
        else
            listener->doneSignal.wait_for(lock, std::chrono::milliseconds(timeout), isDone);
        finished = listener->done;
    }
    if (finished)
    {
        listener->thread.join();
        return 0;
    }
    // The thread cannot be killed safely; it is let go and never touches this object again.
    if (tListener == listener.get())
        listener->abandoned = true; // the thread itself: it is the only reader
    else
    {
        std::lock_guard<std::mutex> lock(listener->hold);
        listener->abandoned = true;
    }
    listener->thread.detach();
    return 0;
}

void CSerialInternalEx::onEvent(unsigned, unsigned) {}

bool CSerialInternalEx::callOutside(const std::function<void()>& call)
{
    auto* listener = tListener;
    if (listener == nullptr || listener->held == nullptr)
    {
        call();
        return true;
    }
    auto* held = listener->held;
    held->unlock();
    call();
    // From here on only `listener` (a local) is touched: the owner may be gone.
    held->lock();
    return !listener->abandoned;
}

char* CSerialInternalEx::listenerBuffer()
{
    return tListener != nullptr ? tListener->buffer : nullptr;
}

void CSerialInternalEx::listen(std::shared_ptr<Listener> listener, CSerialInternalEx* owner)
{
    tListener = listener.get();
    {
        std::unique_lock<std::mutex> hold(listener->hold);
        listener->held = &hold;
        while (!listener->stopping && !listener->abandoned)
        {
            if (owner->waitEvent() != 0)
                break;
            if (listener->stopping)
                break;
            const unsigned event = owner->m_eventMask & owner->m_pendingEvent;
            owner->m_pendingEvent = 0;
            // Linux keeps no line-error word to clear; errors show as failed reads.
            if (event != 0)
                owner->onEvent(event, 0);
        }
        listener->held = nullptr;
    }
    std::lock_guard<std::mutex> lock(listener->doneLock);
    listener->done = true;
    listener->doneSignal.notify_all();
}
