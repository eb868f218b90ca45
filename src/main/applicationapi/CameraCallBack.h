#pragma once

#include "Message/AppMessage.h"

/** What the camera application hears from the main service, through CameraApi. Called on the
    message thread; bound by raw pointer and never owned. */
class CameraCallBack
{
public:
    virtual ~CameraCallBack() = default;

    /** Code 1202 (true when its param1 is not 0). */
    virtual void onStateChanged(bool state) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
};
