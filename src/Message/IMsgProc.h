#pragma once

#include "Message/RemoteMessage.h"

/** The consumer of a message session: what arrives for this process. Called on the message
    thread. */
class IMsgProc
{
public:
    virtual ~IMsgProc() = default;

    /** A valid message addressed to this process. It is recycled when the call returns: keep a
        reference (or a copy) of what is needed later. */
    virtual void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg) = 0;

    /** Any other window message at or above the user range, and every message whose record in
        the shared ring fails validation. */
    virtual void procUnknownMsg(int msg, int wParam, int lParam) = 0;
};
