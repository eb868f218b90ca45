#pragma once

#include "Message/MsgSession.h"

namespace IPCMsg
{

/** The entry point for sending: forwards to MsgSession and adds the ownership rule.

    Every operation that takes a message recycles it after the transport call, whatever the
    result: a caller that passed its only reference must not touch the message afterwards
    (it is back in the pool, its attached object recycled too); a caller that keeps a second
    reference keeps the message intact. Any thread.
*/
class MessageHelper
{
public:
    static void config(int sender, const char* (*getDestName)(int));
    static const char* getDestName(int eAppType);
    static bool registerReceiver(const BroadcastReceiver& receiver);
    /** (The name is the interface's own.) */
    static bool unregisterRecevier(const BroadcastReceiver& receiver);
    static bool sendBroadcast(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle);

    static bool postMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg);
    static bool sendMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg);
    static bool broadcastMessage(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg);

    /** Short forms: a message from the pool with these fields (a reference is taken on a
        non-null object), sent and recycled. */
    static bool postMessage(int dest, int code, int param1, int param2, Parcelable* object);
    static bool sendMessage(int dest, int code, int param1, int param2, Parcelable* object);
    static bool broadcastMessage(int code, int param1, int param2, Parcelable* object);
};

} // namespace IPCMsg
