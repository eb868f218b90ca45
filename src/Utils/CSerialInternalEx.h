#pragma once

#include "Utils/CSerialInternal.h"

#include <functional>
#include <memory>

/** A serial port with a listener thread: every 20 ms (waitEvent) the thread hands the events
    of the mask to `onEvent`, which a subclass overrides to read and deliver the data.

    `stopListener(timeout)` waits at most `timeout` ms. A listener that does not end in time
    (a callback that hangs) is let go rather than killed: it never touches this object again,
    and the object may be destroyed at once. A subclass stops the listener in its own
    destructor, before its members go.
*/
class CSerialInternalEx : public CSerialInternal
{
public:
    CSerialInternalEx() = default;
    ~CSerialInternalEx() override;

    /** Opens synchronously and, when `startListener` is true, starts the listener; the first
        non-zero error. */
    int open(const juce::String& device, unsigned inQueue = 0, unsigned outQueue = 0,
             bool startListener = false) override;
    /** Stops the listener (waiting without limit) and closes the port. */
    int close() override;

    /** Starts the listener thread; nothing when one runs. */
    virtual int startListener();
    /** Stops the listener, waiting at most `timeout` ms (kInfinite: no limit). */
    virtual int stopListener(unsigned timeout = kInfinite);

protected:
    /** Called on the listener thread with the events that happened and the line errors. */
    virtual void onEvent(unsigned event, unsigned errors);

    /** For onEvent: runs a call (the user's callback) with the listener's hold on this
        object released. False when the listener was let go meanwhile: the caller must then
        return at once without touching this object, which may be gone. */
    bool callOutside(const std::function<void()>& call);

    /** On the listener thread: 256 bytes that stay valid for as long as the thread runs, even
        after this object is gone. Null on other threads. */
    char* listenerBuffer();

private:
    struct Listener;
    // The listener of the calling thread (set on listener threads only): the thread reaches its
    // own state without reading m_listener, which the owner may be changing.
    static thread_local Listener* tListener;

    static void listen(std::shared_ptr<Listener> listener, CSerialInternalEx* owner);

    std::shared_ptr<Listener> m_listener;
};
