#include "Message/MessageHelper.h"

namespace IPCMsg
{

namespace
{
RemoteMessage::Ptr fill(int code, int param1, int param2, Parcelable* object)
{
    auto message = RemoteMessage::obtain();
    message->code = code;
    message->param1 = param1;
    message->param2 = param2;
    message->object = object;
    return message;
}

template <typename Transport>
bool sendAndRecycle(const RemoteMessage::Ptr& msg, Transport&& transport)
{
    const bool result = transport(msg);
    if (msg != nullptr)
        msg->recycle();
    return result;
}
} // namespace

void MessageHelper::config(int sender, const char* (*getDestName)(int))
{
    MsgSession::config(sender, getDestName);
}

const char* MessageHelper::getDestName(int eAppType)
{
    return MsgSession::getDestName(eAppType);
}

bool MessageHelper::registerReceiver(const BroadcastReceiver& receiver)
{
    return MsgSession::registerReceiver(receiver);
}

bool MessageHelper::unregisterRecevier(const BroadcastReceiver& receiver)
{
    return MsgSession::unregisterRecevier(receiver);
}

bool MessageHelper::sendBroadcast(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle)
{
    return MsgSession::sendBroadcast(action, bundle);
}

bool MessageHelper::postMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    return sendAndRecycle(msg, [dest](const RemoteMessage::Ptr& m) { return MsgSession::postMessage(dest, m); });
}

bool MessageHelper::sendMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    return sendAndRecycle(msg, [dest](const RemoteMessage::Ptr& m) { return MsgSession::sendMessage(dest, m); });
}

bool MessageHelper::broadcastMessage(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    return sendAndRecycle(msg, [](const RemoteMessage::Ptr& m) { return MsgSession::broadcastMessage(m); });
}

bool MessageHelper::postMessage(int dest, int code, int param1, int param2, Parcelable* object)
{
    return postMessage(dest, fill(code, param1, param2, object));
}

bool MessageHelper::sendMessage(int dest, int code, int param1, int param2, Parcelable* object)
{
    return sendMessage(dest, fill(code, param1, param2, object));
}

bool MessageHelper::broadcastMessage(int code, int param1, int param2, Parcelable* object)
{
    return broadcastMessage(fill(code, param1, param2, object));
}

} // namespace IPCMsg
