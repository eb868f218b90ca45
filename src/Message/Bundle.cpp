#include "Message/Bundle.h"

#include "LogBridge.h"

#include <climits>
#include <cmath>
#include <locale>
#include <sstream>

namespace
{
// juce::var's own conversions, except that values from another process never reach an
// out-of-range cast: a text's digits saturate instead of overflowing, a huge double is clamped.
juce::int64 textToInt64(const juce::String& text)
{
    auto p = text.getCharPointer().findEndOfWhitespace();
    const bool negative = *p == '-';
    if (negative)
        ++p;
    juce::int64 value = 0;
    while (juce::CharacterFunctions::isDigit(*p) && value <= (juce::int64)INT_MAX + 1)
        value = value * 10 + (p.getAndAdvance() - '0');
    return negative ? -value : value;
}

int toInt(const juce::var& value)
{
    if (value.isString())
        return (int)juce::jlimit((juce::int64)INT_MIN, (juce::int64)INT_MAX, textToInt64(value.toString()));
    if (value.isDouble())
    {
        const double d = (double)value;
        return std::isnan(d) ? 0 : (int)juce::jlimit((double)INT_MIN, (double)INT_MAX, d);
    }
    if (value.isInt64())
        return (int)juce::jlimit((juce::int64)INT_MIN, (juce::int64)INT_MAX, (juce::int64)value);
    return (int)value;
}

// JUCE's conversions of a non-finite double to text, and of a text with a huge exponent to a
// double, overflow inside; values from another process may hold either.
juce::String toText(const juce::var& value)
{
    if (value.isDouble())
    {
        const double d = (double)value;
        if (std::isnan(d))
            return "nan";
        if (std::isinf(d))
            return d < 0 ? "-inf" : "inf";
    }
    return value.toString();
}

// A text's leading number, whatever the process's locale; a value beyond the double range
// saturates to the largest double of its sign, a text without a number is 0.
double toDouble(const juce::var& value)
{
    if (!value.isString())
        return (double)value;
    std::istringstream in(value.toString().toStdString());
    in.imbue(std::locale::classic());
    double d = 0;
    in >> d;
    return d;
}

bool toBool(const juce::var& value)
{
    if (value.isString())
    {
        const auto text = value.toString().trim();
        return textToInt64(text) != 0 || text.equalsIgnoreCase("true") || text.equalsIgnoreCase("yes");
    }
    return (bool)value;
}
} // namespace

Bundle::Bundle() = default;

Bundle::~Bundle()
{
    clearValues();
}

Bundle::Ptr Bundle::obtain()
{
    return Ptr(new Bundle());
}

void Bundle::clearValues()
{
    // Clearing walks all 101 slots: skip it for an empty map.
    if (m_values.size() == 0)
        return;
    for (Parcel::ValueMap::Iterator it(m_values); it.next();)
        delete it.getValue();
    m_values.clear();
}

void Bundle::recycle()
{
    clearValues();
    if (m_objects.size() > 0)
        m_objects.clear();
}

Parcelable::Ptr Bundle::clone()
{
    auto copy = obtain();
    for (Parcel::ValueMap::Iterator it(m_values); it.next();)
        if (it.getValue() != nullptr)
            copy->m_values.set(it.getKey(), new juce::var(it.getValue()->clone()));
    for (juce::HashMap<juce::String, Parcelable::Ptr>::Iterator it(m_objects); it.next();)
        copy->m_objects.set(it.getKey(), it.getValue());
    return Parcelable::Ptr(copy.get());
}

//==============================================================================
void Bundle::putValue(const juce::String& key, juce::var* value)
{
    if (m_values.contains(key))
        delete m_values[key];
    m_values.set(key, value);
}

void Bundle::putInt(const juce::String& key, int value)
{
    if (key.isNotEmpty())
        putValue(key, new juce::var(value));
}

void Bundle::putBool(const juce::String& key, bool value)
{
    if (key.isNotEmpty())
        putValue(key, new juce::var(value));
}

void Bundle::putDouble(const juce::String& key, double value)
{
    if (key.isNotEmpty())
        putValue(key, new juce::var(value));
}

void Bundle::putString(const juce::String& key, const juce::String& value)
{
    if (key.isNotEmpty())
        putValue(key, new juce::var(value));
}

void Bundle::putByteArray(const juce::String& key, const juce::MemoryBlock& value)
{
    if (key.isNotEmpty())
        putValue(key, new juce::var(value));
}

void Bundle::putByteArray(const juce::String& key, const void* data, int size)
{
    if (key.isEmpty())
        return;
    if (data == nullptr || size < 0)
        size = 0;
    putValue(key, new juce::var(juce::MemoryBlock(data, (size_t)size)));
}

void Bundle::putBundle(const juce::String& key, const Ptr& bundle)
{
    putParcelable(key, Parcelable::Ptr(bundle.get()));
}

void Bundle::putParcelable(const juce::String& key, const Parcelable::Ptr& object)
{
    if (key.isEmpty())
        return;
    // A null object could not be written back; it removes the key instead.
    if (object == nullptr)
        m_objects.remove(key);
    else
        m_objects.set(key, object);
}

//==============================================================================
const juce::var* Bundle::findValue(const juce::String& key) const
{
    return m_values.contains(key) ? m_values[key] : nullptr;
}

int Bundle::getInt(const juce::String& key, int defaultValue) const
{
    auto* value = findValue(key);
    return value != nullptr ? toInt(*value) : defaultValue;
}

bool Bundle::getBool(const juce::String& key, bool defaultValue) const
{
    auto* value = findValue(key);
    return value != nullptr ? toBool(*value) : defaultValue;
}

double Bundle::getDouble(const juce::String& key, double defaultValue) const
{
    auto* value = findValue(key);
    return value != nullptr ? toDouble(*value) : defaultValue;
}

juce::String Bundle::getString(const juce::String& key, const juce::String& defaultValue) const
{
    auto* value = findValue(key);
    return value != nullptr ? toText(*value) : defaultValue;
}

juce::MemoryBlock* Bundle::getByteArray(const juce::String& key) const
{
    auto* value = findValue(key);
    return value != nullptr ? value->getBinaryData() : nullptr;
}

Bundle::Ptr Bundle::getBundle(const juce::String& key) const
{
    // An object read from a Parcel may be of any registered class: only a Bundle is a Bundle.
    return Ptr(dynamic_cast<Bundle*>(getParcelable(key).get()));
}

Parcelable::Ptr Bundle::getParcelable(const juce::String& key) const
{
    return m_objects.contains(key) ? m_objects[key] : nullptr;
}

//==============================================================================
void Bundle::writeToParcel(Parcel* p)
{
    if (p == nullptr)
        return;
    p->writeInt(ParcelableMagic::kBundle);
    p->writeMap(m_values);
    writeParcelable(p);
}

void Bundle::writeParcelable(Parcel* p)
{
    p->writeInt(m_objects.size());
    for (juce::HashMap<juce::String, Parcelable::Ptr>::Iterator it(m_objects); it.next();)
    {
        p->writeString(it.getKey());
        it.getValue()->writeToParcel(p);
    }
}

void Bundle::createFromParcel(Parcel* p)
{
    if (p == nullptr || p->readInt() != ParcelableMagic::kBundle)
        return;
    p->readMap(m_values);
    readParcelable(p);
}

void Bundle::readParcelable(Parcel* p)
{
    const int count = p->readInt();
    for (int i = 0; i < count; ++i)
    {
        const auto key = p->readString();
        auto object = ::createFromParcel(p);
        if (object == nullptr)
        {
            LogBridge::instance().logErrorF("Message/Bundle", 215, "Bundle", "readParcelable error with unknown flag");
            return;
        }
        m_objects.set(key, object);
    }
}
