#pragma once

#include "Message/AppMessage.h"

/** What the Bluetooth application hears from the main service, through BluetoothApi.
    Operations 9 and 10 have empty bodies: a class that does not override them ignores codes
    1953 and 74. Called on the message thread; bound by raw pointer and never owned. */
class BluetoothCallBack
{
public:
    virtual ~BluetoothCallBack() = default;

    /** Code 1974: the message as it came, its code. */
    virtual void onBluetoothMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; BluetoothApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1952 (param1, param2). */
    virtual void onPhoneEvent(int param1, int param2) = 0;
    /** Code 1951 (param1, param2). */
    virtual void onLinkEvent(int param1, int param2) = 0;
    /** Code 1177, the Bluetooth application's own code (param1, param2). */
    virtual void onBluetoothCommand(int param1, int param2) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1194 (param1). */
    virtual void onGeneralEvent(int param1) = 0;
    /** Code 1953 (param1, param2). */
    virtual void onMusicEvent(int, int) {}
    /** Code 74 (param1, param2). */
    virtual void onCarDataEvent(int, int) {}
};
