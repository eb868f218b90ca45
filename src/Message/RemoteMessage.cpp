#include "Message/RemoteMessage.h"

std::list<RemoteMessage::Ptr> RemoteMessage::sOwnedPool;
juce::CriticalSection RemoteMessage::sCriticalSection;

RemoteMessage::Ptr RemoteMessage::obtain()
{
    const juce::ScopedLock lock(sCriticalSection);
    if (!sOwnedPool.empty())
    {
        Ptr message = std::move(sOwnedPool.front());
        sOwnedPool.pop_front();
        message->pooled = false;
        return message;
    }
    return Ptr(new RemoteMessage());
}

void RemoteMessage::purgeAll()
{
    std::list<Ptr> released;
    const juce::ScopedLock lock(sCriticalSection);
    released.swap(sOwnedPool);
}

int RemoteMessage::pooledCount()
{
    const juce::ScopedLock lock(sCriticalSection);
    return (int)sOwnedPool.size();
}

void RemoteMessage::reset()
{
    code = 0;
    param1 = 0;
    param2 = 0;
    sender = -1;
    object = nullptr;
}

void RemoteMessage::recycle()
{
    if (getReferenceCount() >= 2 || pooled)
        return;
    const juce::ScopedLock lock(sCriticalSection);
    if (object != nullptr)
        object->recycle();
    if ((int)sOwnedPool.size() < kPoolSize)
    {
        reset();
        pooled = true;
        sOwnedPool.push_back(Ptr(this));
    }
}

Parcelable::Ptr RemoteMessage::clone()
{
    auto copy = obtain();
    copy->code = code;
    copy->param1 = param1;
    copy->param2 = param2;
    if (object != nullptr)
        copy->object = object->clone();
    return Parcelable::Ptr(copy.get());
}

void RemoteMessage::writeToParcel(Parcel* p)
{
    if (p == nullptr)
        return;
    p->writeInt(ParcelableMagic::kRemoteMessage);
    p->writeInt(code);
    p->writeInt(param1);
    p->writeInt(param2);
    p->writeInt(sender);
    if (object != nullptr)
        object->writeToParcel(p);
}

void RemoteMessage::createFromParcel(Parcel* p)
{
    if (p == nullptr || p->readInt() != ParcelableMagic::kRemoteMessage)
        return;
    code = p->readInt();
    param1 = p->readInt();
    param2 = p->readInt();
    sender = p->readInt();
    object = ::createFromParcel(p);
}
