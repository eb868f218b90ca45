#pragma once

#include "main/applicationapi/InfoSource.h"

/** What the main menu application hears from the main service, through MainMenuApi. The
    meanings of the numbers (source numbers, application ids) are the main service's. Called on
    the message thread; bound by raw pointer and never owned. */
class MainMenuCallBack
{
public:
    virtual ~MainMenuCallBack() = default;

    /** Code 1174 sub-code 1 (arg2); also the "normalSrc" and then the "rearSrc" value of
        sub-code 2. */
    virtual void onSource(int source) = 0;
    /** Code 1174 sub-code 8 (arg2); also the "frontSrc" value of sub-code 2. */
    virtual void onFrontSource(int source) = 0;
    /** Code 1174 sub-code 3: the upper half of arg2 (signed), and whether its lower half is
        not zero. */
    virtual void onSourceFlag(int value, bool flag) = 0;
    /** The "state" bytes of code 1174 sub-code 2 (valid during the call only). */
    virtual void onSourceStates(const unsigned char* states, int size) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1174 sub-code 7: the record its Bundle holds. */
    virtual void onInfoSource(const InfoSource::Ptr& info) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1174 sub-code 4 (arg2). */
    virtual void onMenuValue(int /*value*/) {}
    /** Code 1174 sub-code 9: the "data" bytes (valid during the call only) and the "time". */
    virtual void onAppList(const unsigned char* /*data*/, int /*size*/, int /*time*/) {}
    /** Code 1174 sub-code 5. */
    virtual void onMenuEvent() {}
};
