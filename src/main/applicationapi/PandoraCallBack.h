#pragma once

#include "Message/AppMessage.h"

/** What the Pandora player hears from the main service, through PandoraApi. Called on the
    message thread; bound by raw pointer and never owned. */
class PandoraCallBack
{
public:
    virtual ~PandoraCallBack() = default;

    /** The own codes 1209, 1579, 1636, 1639, 2526 and 48654: the message as it came, its code. */
    virtual void onPandoraMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; PandoraApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1199; PandoraApi then asks the JUCE application to quit. */
    virtual void onQuit(const AppMessage::Ptr& message) = 0;
};
