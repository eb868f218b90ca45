#pragma once

#include <LmCom.h>

#include <string>

namespace LmComTool
{

/** Objects of the bus as indented text, one line per node: a Bundle's values with their
    types ("Title: string \"Radio 1\""), nested Bundles, ParcelableArrays with their elements,
    RemoteMessages with their fields, byte arrays as hex. Keys are listed in byte order, values
    before nested objects. The same text serves the monitor and the decoder.
*/
class ObjectTree
{
public:
    /** How many bytes of a byte array are shown before " ...". */
    static constexpr size_t kBytesShown = 64;

    /** Appends the object's lines: its head at `indent` spaces, its content two deeper. */
    static void append(std::string& out, Parcelable& object, int indent);
    /** "from=AppRadio code=1184 p1=5 p2=0". */
    static std::string messageFields(const RemoteMessage& message);
    /** A text in double quotes; quotes, backslashes and control characters escaped. */
    static std::string quoted(const juce::String& text);
    /** The shortest text that reads back as the same double ("inf", "nan" for those). */
    static std::string formatDouble(double value);
    /** A key as is when it is a plain word, else quoted. */
    static std::string key(const juce::String& key);
    /** "int 5", "string \"x\"", "bytes[3] 01 02 03" ... */
    static std::string value(const juce::var& value);

private:
    static void appendNode(std::string& out, Parcelable& object, int indent, const std::string& label);
};

} // namespace LmComTool
