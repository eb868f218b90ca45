#pragma once

#include "Message/AppMessage.h"

/** Receives every message that arrives for the application process (code, param1, param2 and
    the attached object in an AppMessage). Implemented by the application API; called
    synchronously on the message thread. */
class AppServiceCallBack
{
public:
    virtual ~AppServiceCallBack() = default;

    virtual void remoteCallBack(const juce::ReferenceCountedObjectPtr<AppMessage>& message) = 0;
};
