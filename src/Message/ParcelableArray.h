#pragma once

#include "Message/Parcelable.h"

#include <vector>

/** An ordered list of objects of any registered class that travels as one object.
    Magic "PAAY". No lock: one thread at a time. */
class ParcelableArray : public Parcelable
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<ParcelableArray>;
    using Parcelable::writeToParcel;

    /** Always a new, empty array (this class keeps no pool). */
    static Ptr obtain();

    /** Appends an element; a null element is ignored (it could not be written). */
    void addParcelable(const Parcelable::Ptr& element);
    const std::vector<Parcelable::Ptr>& getParcelableVector() const { return m_elements; }

    void writeToParcel(Parcel* p) override;
    /** Appends the elements read to those already held. */
    void createFromParcel(Parcel* p) override;
    int getFlags() override { return ParcelableMagic::kParcelableArray; }
    /** Removes all elements (their own recycle is not called). */
    void recycle() override;
    /** A deep copy: each element cloned. */
    Parcelable::Ptr clone() override;

private:
    ParcelableArray() = default;
    ~ParcelableArray() override = default;
    friend struct juce::ContainerDeletePolicy<ParcelableArray>;

    std::vector<Parcelable::Ptr> m_elements;

    JUCE_DECLARE_NON_COPYABLE(ParcelableArray)
};
