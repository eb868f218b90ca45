#pragma once

#include <juce_events/juce_events.h>

/** A message of the application side: code, param1, param2 and the attached object, in the
    four fields that older JUCE messages carried. It derives from juce::Message, so it can also
    go through the message loop.

    intParameter1 = code, intParameter2 = param1, intParameter3 = param2; pointerParameter holds
    the attached object (a Parcelable, usually a Bundle) for the message's lifetime, or null.
*/
class AppMessage : public juce::Message
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<AppMessage>;

    AppMessage() = default;
    AppMessage(int code, int param1, int param2, juce::ReferenceCountedObject* object = nullptr)
        : intParameter1(code), intParameter2(param1), intParameter3(param2), pointerParameter(object)
    {
    }

    int intParameter1 = 0;
    int intParameter2 = 0;
    int intParameter3 = 0;
    juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject> pointerParameter;
};
