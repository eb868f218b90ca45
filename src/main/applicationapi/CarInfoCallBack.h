#pragma once

/** What the car information application receives through its CarInfoApi. Called on the
    message thread; bound by raw pointer and never owned. */
class CarInfoCallBack
{
public:
    virtual ~CarInfoCallBack() = default;

    /** Code 1322 from the main service, with its two values. */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** One value decoded from an answer frame of the host controller (code 74): its item number
        and the raw value (units are the host controller's). */
    virtual void onCarInfoValue(int item, int value) = 0;
};
