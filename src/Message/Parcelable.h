#pragma once

#include "Message/Parcel.h"

/** The base of every object that travels between processes inside a Parcel.

    Each serialized object starts with its class's four-byte type magic (a little-endian int32),
    and the free function createFromParcel() rebuilds the next object of a Parcel by looking the
    magic up in the process-wide registry. Objects are reference counted.
*/
class Parcelable : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Parcelable>;

    ~Parcelable() override = default;

    /** Appends the object to p, its type magic first. */
    virtual void writeToParcel(Parcel* p) = 0;
    /** Fills this object from p at its cursor; reads the magic first and nothing more when it
        does not match. */
    virtual void createFromParcel(Parcel* p) = 0;
    /** The class's type magic. */
    virtual int getFlags() = 0;
    /** Hands the object back to its class's pool, by that class's rules. */
    virtual void recycle() = 0;
    /** A copy, by that class's rules. */
    virtual Ptr clone() = 0;

    /** Writes the object into a Parcel from the pool and returns it. */
    Parcel::Ptr writeToParcel();
};

/** One entry of the object registry. */
struct ParcelableCreator
{
    int magic;
    Parcelable::Ptr (*factory)();
    ParcelableCreator* next;
};

/** Type magics: their little-endian bytes spell the tag. */
namespace ParcelableMagic
{
constexpr int kBundle = 0x4C444E42;          // "BNDL"
constexpr int kParcelableArray = 0x59414150; // "PAAY"
constexpr int kRemoteMessage = 0x47534D52;   // "RMSG"
} // namespace ParcelableMagic

/** Builds the next object in p, or returns null: for an empty Parcel, and for an unknown magic
    (which is only peeked, so nothing is consumed). Objects nested deeper than
    kMaxParcelableDepth also give null, so that no input can exhaust the stack. */
Parcelable::Ptr createFromParcel(Parcel* p);

/** How deeply objects may nest inside one another when they are rebuilt. */
constexpr int kMaxParcelableDepth = 64;
