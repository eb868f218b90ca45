#pragma once

#include "Message/Bundle.h"

/** Receives parameter-group data for the Bluetooth application, through BluetoothApi. Called
    on the message thread; bound by raw pointer and never owned. */
class BluetoothPGNCallBack
{
public:
    virtual ~BluetoothPGNCallBack() = default;

    /** Code 1636: param1, param2 and the Bundle that came with it (never null). */
    virtual void onPGNData(int param1, int param2, const Bundle::Ptr& data) = 0;
};
