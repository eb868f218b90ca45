#pragma once

#include <juce_core/juce_core.h>

/** The board's fixed device names and switches. Device names are those of the head unit
    ("COM2:"); the port maps them to Linux nodes when they are opened. Static only; any thread. */
class CorvaneConfig
{
public:
    /** "COM2:", the vehicle micro-controller. */
    static juce::String getMcuUartName() { return "COM2:"; }
    /** "COM3:", the Bluetooth module. */
    static juce::String getBTUartName() { return "COM3:"; }
    static int getBTUartBandRate() { return 115200; }
    /** "COM5:", the disc loader. */
    static juce::String getDiscUartName() { return "COM5:"; }
    static bool isSystemDebug() { return false; }
    /** True unless "USBAsSD" of section "USB" in "Bin/QN_MAIN.ini" is 0 (missing counts as
        -1: true). The file is read on every call. */
    static bool isUseSDAsUsb();

private:
    CorvaneConfig() = delete;
};
