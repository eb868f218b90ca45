#pragma once

#include "Message/Parcelable.h"

#include <list>

/** The unit one process sends to another: a code, two parameters, the sender's identity and
    an optional attached object. Magic "RMSG".

    Messages come from a process-wide pool of at most 20 (obtain / recycle / purgeAll, any
    thread). The pool's lock may be held while the attached object's own pool lock is taken,
    never the reverse. A message itself is used by one thread at a time.
*/
class RemoteMessage : public Parcelable
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<RemoteMessage>;
    using Parcelable::writeToParcel;

    static constexpr int kPoolSize = 20;

    /** A pooled message (fields reset) or a new one. */
    static Ptr obtain();
    /** Empties the pool. */
    static void purgeAll();
    /** Number of messages waiting in the pool. */
    static int pooledCount();

    /** 20 bytes (magic, code, param1, param2, sender), then the object if there is one. */
    void writeToParcel(Parcel* p) override;
    /** Reads the fields; the object is whatever follows (null when nothing or unknown). */
    void createFromParcel(Parcel* p) override;
    int getFlags() override { return ParcelableMagic::kRemoteMessage; }
    /** Only when the caller's pointer is the only one and the message is not pooled: recycles
        the attached object, then pools the message if fewer than 20 are pooled. */
    void recycle() override;
    /** Copies code, params and a clone of the object. The copy's sender stays -1 on purpose:
        a clone is a new message that is stamped again when sent. */
    Parcelable::Ptr clone() override;

    int code = 0;
    int param1 = 0;
    int param2 = 0;
    Parcelable::Ptr object;
    /** The sending process's eAppType; -1 until the session stamps it. */
    int sender = -1;

private:
    RemoteMessage() = default;
    ~RemoteMessage() override = default;
    friend struct juce::ContainerDeletePolicy<RemoteMessage>;

    void reset();

    bool pooled = false;

    static std::list<Ptr> sOwnedPool;
    static juce::CriticalSection sCriticalSection;

    JUCE_DECLARE_NON_COPYABLE(RemoteMessage)
};
