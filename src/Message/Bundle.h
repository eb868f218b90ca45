#pragma once

#include "Message/Parcelable.h"

/** A string-keyed record of typed values (int, bool, double, String, byte array) and, under a
    separate set of keys, nested objects (normally other Bundles). Magic "BNDL".

    Keys are compared exactly. Every put with an empty key does nothing. A Bundle has no lock:
    one thread at a time. Nested objects are shared, not copied, by putBundle, getBundle and
    clone().
*/
class Bundle : public Parcelable
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Bundle>;
    using Parcelable::writeToParcel;

    /** Always a new, empty Bundle (this class keeps no pool). */
    static Ptr obtain();

    void writeToParcel(Parcel* p) override;
    void createFromParcel(Parcel* p) override;
    int getFlags() override { return ParcelableMagic::kBundle; }
    /** Empties the Bundle, for every holder; it stays usable. */
    void recycle() override;
    /** Fresh copies of the values; the very same nested objects. The shallow nesting is the
        established behaviour and is kept. */
    Parcelable::Ptr clone() override;

    void putInt(const juce::String& key, int value);
    void putBool(const juce::String& key, bool value);
    void putDouble(const juce::String& key, double value);
    void putString(const juce::String& key, const juce::String& value);
    void putByteArray(const juce::String& key, const juce::MemoryBlock& value);
    void putByteArray(const juce::String& key, const void* data, int size);
    /** Stores a nested Bundle (shared). A null Bundle removes the key. */
    void putBundle(const juce::String& key, const Ptr& bundle);
    /** Stores any nested object (shared); a null one removes the key. */
    void putParcelable(const juce::String& key, const Parcelable::Ptr& object);

    /** The value converted by juce::var's own rules ("12" gives 12), or the default. */
    int getInt(const juce::String& key, int defaultValue) const;
    bool getBool(const juce::String& key, bool defaultValue) const;
    double getDouble(const juce::String& key, double defaultValue) const;
    juce::String getString(const juce::String& key, const juce::String& defaultValue) const;
    /** The stored block when the value is binary, else null. Owned by the Bundle, valid until the
        key is overwritten or the Bundle is emptied. */
    juce::MemoryBlock* getByteArray(const juce::String& key) const;
    /** The nested object under the key if it is a Bundle, else null. */
    Ptr getBundle(const juce::String& key) const;
    /** The nested object under the key, whatever its class, or null. */
    Parcelable::Ptr getParcelable(const juce::String& key) const;

    /** Plain-value access for readers that walk a Bundle (tools, tests). */
    const Parcel::ValueMap& getValueMap() const { return m_values; }
    const juce::HashMap<juce::String, Parcelable::Ptr>& getObjectMap() const { return m_objects; }
    bool isEmpty() const { return m_values.size() == 0 && m_objects.size() == 0; }

private:
    Bundle();
    ~Bundle() override;
    friend struct juce::ContainerDeletePolicy<Bundle>;

    void putValue(const juce::String& key, juce::var* value);
    const juce::var* findValue(const juce::String& key) const;
    void clearValues();
    void writeParcelable(Parcel* p);
    void readParcelable(Parcel* p);

    Parcel::ValueMap m_values{101};
    juce::HashMap<juce::String, Parcelable::Ptr> m_objects{101};

    JUCE_DECLARE_NON_COPYABLE(Bundle)
};
