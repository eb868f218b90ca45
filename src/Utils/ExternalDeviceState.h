#pragma once

/** Whether the removable devices that media sources play from are there, at the moment of the
    call: an Apple device on the accessory port "APD1:" (mapped by the board profile), a
    Pandora session on it, up to four USB volumes and the SD card. No state, no messages,
    nothing logged: every failure reads as "not connected". Static only; any thread.

    The USB volumes are the folders "Hard Disk", "Hard Disk2", "Hard Disk3" and "Hard Disk4"
    and the SD card is "/SD", all at the top of the file-system root (LMCOM_ROOT): the head
    unit's file system has no current folder, so its bare names were always at the top.
*/
class ExternalDeviceState
{
public:
    /** True when "APD1:" opens. */
    static bool isIPodConnect();
    /** True when "APD1:" opens and answers the Pandora state request (0x23041C, 12 bytes)
        with a third 32-bit word that is not zero. Linux accessory nodes know no such request:
        false there. */
    static bool isPandoraConnect();
    /** Bit i set when the i-th USB volume folder exists and is a folder (bits 0 to 3). */
    static int getUSBConnect();
    /** True when "/SD" exists and is a folder. */
    static bool isSDConnect();

private:
    ExternalDeviceState() = delete;
};
