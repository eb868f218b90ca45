#include "Message/ParcelableArray.h"

#include "LogBridge.h"

ParcelableArray::Ptr ParcelableArray::obtain()
{
    return Ptr(new ParcelableArray());
}

void ParcelableArray::addParcelable(const Parcelable::Ptr& element)
{
    if (element != nullptr)
        m_elements.push_back(element);
}

void ParcelableArray::writeToParcel(Parcel* p)
{
    if (p == nullptr)
        return;
    p->writeInt(ParcelableMagic::kParcelableArray);
    p->writeInt((int)m_elements.size());
    for (auto& element : m_elements)
        element->writeToParcel(p);
}

void ParcelableArray::createFromParcel(Parcel* p)
{
    if (p == nullptr || p->readInt() != ParcelableMagic::kParcelableArray)
        return;
    const int count = p->readInt();
    for (int i = 0; i < count; ++i)
    {
        auto element = ::createFromParcel(p);
        if (element == nullptr)
        {
            // Same tag and text as Bundle's, deliberately: log readers look for this line.
            LogBridge::instance().logErrorF("Message/ParcelableArray", 45, "Bundle",
                                            "readParcelable error with unknown flag");
            return;
        }
        m_elements.push_back(element);
    }
}

void ParcelableArray::recycle()
{
    m_elements.clear();
}

Parcelable::Ptr ParcelableArray::clone()
{
    auto copy = obtain();
    for (auto& element : m_elements)
        copy->m_elements.push_back(element->clone());
    return Parcelable::Ptr(copy.get());
}
