#pragma once

#include "Message/AppMessage.h"
#include "Message/Bundle.h"

/** Checked access to what an incoming message carries, for the application APIs.

    Another process decides what is attached to a message, so the attached object is reached
    only through a dynamic cast: an object of another class counts as absent and is never
    reinterpreted. Byte arrays are read with their real length, and integers are taken from
    the bytes only as far as the bytes go. Nothing here dereferences a number that came in a
    message. Reads only; safe on any thread for a message that no other thread changes.
*/
class ApiMessageHelper
{
public:
    /** "data": the key of the byte array that the APIs' byte payloads travel under. */
    static const juce::String KEY_DATA;

    /** The attached object as a T, or null when the message is null, carries nothing, or
        carries an object of another class. */
    template <class T>
    static juce::ReferenceCountedObjectPtr<T> objectAs(const AppMessage::Ptr& message)
    {
        return message != nullptr ? dynamic_cast<T*>(message->pointerParameter.get()) : nullptr;
    }

    /** The attached Bundle, or null (see objectAs). */
    static Bundle::Ptr bundleOf(const AppMessage::Ptr& message) { return objectAs<Bundle>(message); }

    /** The byte array stored under key in the attached Bundle, or null when there is no
        Bundle or the key holds no byte array. The block belongs to the Bundle: hold the
        Bundle (or the message) while reading it. */
    static const juce::MemoryBlock* byteArrayOf(const AppMessage::Ptr& message, const juce::String& key);

    /** Copies the first count integers of an attached int array (RemoteObjFormat::formatIntArray,
        4 little-endian bytes each) into values. False, with values untouched, when the message
        carries no such array or the array holds fewer than count integers. */
    static bool intsOf(const AppMessage::Ptr& message, int* values, int count);

    /** The format code (RemoteObjFormat::Format) of the attached Bundle, 0 when there is no
        Bundle or it carries none. */
    static int formatOf(const AppMessage::Ptr& message);

    /** The line logged for a message that an API drops because of what it carries:
        "code <code> dropped: <reason>" at error level, with the API's source and tag. */
    static void logDropped(const char* source, int line, const char* tag, int code, const char* reason);

private:
    ApiMessageHelper() = delete;
};
