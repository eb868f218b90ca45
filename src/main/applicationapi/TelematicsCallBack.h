#pragma once

#include "Message/AppMessage.h"

/** What the telematics unit hears from the main service, through TelematicsApi. Called on the
    message thread; bound by raw pointer and never owned. */
class TelematicsCallBack
{
public:
    virtual ~TelematicsCallBack() = default;

    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; TelematicsApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1208 with param1 0: the bytes under "data" of its Bundle (valid during the call) and
        their number. */
    virtual void onTelematicsData(const unsigned char* data, int length) = 0;
};
