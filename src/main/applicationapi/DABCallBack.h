#pragma once

#include "Message/AppMessage.h"

/** What the DAB radio hears from the main service, through DABApi. Called on the message
    thread; bound by raw pointer and never owned. */
class DABCallBack
{
public:
    virtual ~DABCallBack() = default;

    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 48684: the message as it came, its code. */
    virtual void onDABMessage(const AppMessage::Ptr& message, int code) = 0;
};
