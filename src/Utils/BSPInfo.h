#pragma once

#include <juce_core/juce_core.h>

/** Versions and identities of the board: boot loader, operating system, SD card and the
    board's unique identity. Static only; any thread.

    The values come from the port's board (Platform::Board): on Linux the os-release text, the
    DMI or device-tree boot version and identity, and the SD card's CID. What the board does
    not have reads as the failure value ("" or the prefix alone).
*/
class BSPInfo
{
public:
    /** Always "". */
    static juce::String getEBootVersion();
    /** The operating system's version text, passed through unchanged; "" when unknown. */
    static juce::String getOSVersion();
    /** The boot loader's version text, passed through unchanged; "" when unknown. */
    static juce::String getNBootVersion();
    /** "SDID_V " followed by the SD card's identity ("SDID_V " alone without a card). */
    static juce::String getSDID();
    /** "UUID_V " followed by, for each of the identity's bytes 8 to 15, the decimal value of
        its high and then its low four bits ("UUID_V " alone without an identity). */
    static juce::String getUUID();
    /** Writes the 8 bytes packed from a 16-character text (byte i: character 2i shifted left
        four bits, or'ed with the low four bits of character 2i+1) to the device "EPM1:".
        False for any other length (the device is not touched) or when the device does not
        open; true when it opened, whether or not the write went through. */
    static bool setUUID(juce::String uuid);

private:
    BSPInfo() = delete;
};
