#pragma once

/** Receives iPod information for the Bluetooth application, through BluetoothApi. Called on
    the message thread; bound by raw pointer and never owned. */
class BluetoothIpodInfoCallBack
{
public:
    virtual ~BluetoothIpodInfoCallBack() = default;

    /** Code 1528: the three integers of its int array, in order. */
    virtual void onIpodInfo(int value1, int value2, int value3) = 0;
};
