#pragma once

#include "Message/AppCommandLine.h"
#include "Message/Bundle.h"

#include <vector>

/** One record of a message-body list. The data pointer may be null. */
struct _MessageBody
{
    int nValue1 = 0;
    int nValue2 = 0;
    int nLength = 0;
    unsigned char* pData = nullptr;
};

/** Wraps one typed value in a Bundle with a fixed key layout, its format code under "Format",
    and unwraps it by type on the other side. A reader given a Bundle of another format (or
    null) returns its empty result: 0, "", null or an empty list. */
class RemoteObjFormat
{
public:
    enum Format
    {
        kByteArray = 1,
        kIntArray = 3,
        kString = 4,
        kInt = 5,
        kCommandLine = 7,
        kMessageBodyList = 8
    };

    static const juce::String KEY_FORMAT;
    static const juce::String KEY_INT;
    static const juce::String KEY_STRING;
    static const juce::String KEY_BYTES;
    static const juce::String KEY_INTS;
    static const juce::String KEY_COMB_OBJ;
    static const juce::String KEY_BUNDLE;
    // Defined with the others; no operation writes or reads them.
    static const juce::String KEY_STRINGS;
    static const juce::String KEY_BYTE;
    static const juce::String KEY_APPS;

    static Bundle::Ptr formatInt(int value);
    static Bundle::Ptr formatString(const juce::String& value);
    static Bundle::Ptr formatByteArray(const unsigned char* data, int size);
    /** The ints in memory order, 4 little-endian bytes each. */
    static Bundle::Ptr formatIntArray(const int* values, int count);
    /** Null for a null command; its extra data is shared, not copied. */
    static Bundle::Ptr formatCommandLine(const AppCommandLine::Ptr& command);
    static Bundle::Ptr formatMessageBodyList(const std::vector<_MessageBody*>& list);

    static int getInt(const Bundle::Ptr& bundle);
    static juce::String getString(const Bundle::Ptr& bundle);
    /** Owned by the Bundle. */
    static juce::MemoryBlock* getByteArray(const Bundle::Ptr& bundle);
    /** Owned by the Bundle; 4 bytes per int. */
    static juce::MemoryBlock* getIntArray(const Bundle::Ptr& bundle);
    static AppCommandLine::Ptr generateCommandLine(const Bundle::Ptr& bundle);
    /** Records and their data arrays belong to the caller (free with freeMessageBodyList). The
        number of records is bounded by the Bundle's entries, so no count makes it allocate
        more than the Bundle could describe; a record's length never exceeds its data. */
    static std::vector<_MessageBody*> getMessageBodyList(const Bundle::Ptr& bundle);
    /** Frees what getMessageBodyList returned. */
    static void freeMessageBodyList(std::vector<_MessageBody*>& list);

private:
    RemoteObjFormat() = delete;
    static int formatOf(const Bundle::Ptr& bundle);
};
