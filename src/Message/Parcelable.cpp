#include "Message/Parcelable.h"

#include "Message/Bundle.h"
#include "Message/ParcelableArray.h"
#include "Message/RemoteMessage.h"

namespace
{
// The registry is built by one explicit call on first use instead of by static objects, so
// that a static library keeps all three classes however little of it a program references.
ParcelableCreator* registryHead()
{
    static ParcelableCreator bundleCreator{ParcelableMagic::kBundle,
                                           [] { return Parcelable::Ptr(Bundle::obtain().get()); }, nullptr};
    static ParcelableCreator arrayCreator{ParcelableMagic::kParcelableArray,
                                          [] { return Parcelable::Ptr(ParcelableArray::obtain().get()); }, nullptr};
    static ParcelableCreator messageCreator{ParcelableMagic::kRemoteMessage,
                                            [] { return Parcelable::Ptr(RemoteMessage::obtain().get()); }, nullptr};
    static ParcelableCreator* head = []
    {
        ParcelableCreator* first = nullptr;
        for (auto* creator : {&bundleCreator, &arrayCreator, &messageCreator})
        {
            creator->next = first;
            first = creator;
        }
        return first;
    }();
    return head;
}

thread_local int tDepth = 0;

struct DepthGuard
{
    DepthGuard() { ++tDepth; }
    ~DepthGuard() { --tDepth; }
};
} // namespace

Parcel::Ptr Parcelable::writeToParcel()
{
    auto parcel = Parcel::obtain();
    writeToParcel(parcel.get());
    return parcel;
}

Parcelable::Ptr createFromParcel(Parcel* p)
{
    if (p == nullptr || p->dataAvail() <= 0)
        return nullptr;

    // Peek at the magic: the object's own createFromParcel reads it again.
    const int position = p->dataPosition();
    const int magic = p->readInt();
    p->setDataPosition(position);

    for (auto* creator = registryHead(); creator != nullptr; creator = creator->next)
    {
        if (creator->magic != magic)
            continue;
        if (tDepth >= kMaxParcelableDepth)
            return nullptr;
        const DepthGuard guard;
        auto object = creator->factory();
        object->createFromParcel(p);
        return object;
    }
    return nullptr;
}
