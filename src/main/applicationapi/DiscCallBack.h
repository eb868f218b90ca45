#pragma once

#include "Message/AppMessage.h"
#include "main/applicationapi/InfoMedia.h"

/** What the disc player hears from the main service, through DiscApi. Operations 7 and 8 have
    empty bodies. Called on the message thread; bound by raw pointer and never owned. */
class DiscCallBack
{
public:
    virtual ~DiscCallBack() = default;

    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203. Not answered by DiscApi: call powerOffReady when the player is ready. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1179: the message as it came, its code. */
    virtual void onDiscMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1634 (param1, param2). */
    virtual void onDiscState(int param1, int param2) = 0;
    /** Code 1636: param1 and the bytes under "data" of its Bundle (valid during the call). */
    virtual void onDiscData(int param1, const juce::MemoryBlock& data) = 0;
    /** Code 1639: its Bundle as an InfoMedia record. */
    virtual void onDiscInfo(const InfoMedia::Ptr&) {}
    /** Code 1640: param1 and its RemoteObjFormat text. */
    virtual void onDiscText(int, const juce::String&) {}
};
