#pragma once

#include "Message/Parcel.h"
#include "Navico/PGNPacket.h"

#include <juce_core/juce_core.h>

/** Static routines that read and write the parts of NMEA 2000 parameter groups in a Parcel,
    and the field tables of the nine entertainment PGNs (130569 to 130585).

    A parameter group in a Parcel starts with a head of six bytes: the PGN (3 bytes, low byte
    first), a reserved byte and two header bytes; its payload follows. The writers of fields
    keep the payload within one fast-packet message (223 bytes) and write nothing that would
    not fit. Text fields use the NMEA 2000 variable-length string form: a length byte that
    counts itself, the control byte and the text; then the control byte (1: ASCII, 0: UTF-16
    little-endian); then the text.

    Any thread; a Parcel is used by one thread at a time. Null parcels are refused (false, -1).
*/
class PGNHelper
{
public:
    /** The most payload bytes one fast-packet message carries. */
    static constexpr int kMaxPayloadLength = 223;
    /** PGN, reserved byte and two header bytes. */
    static constexpr int kHeadLength = 6;
    /** The size getFiledsValueSize gives a variable-length value (type 4). */
    static constexpr int kVariableSize = 65535;
    /** The longest variable-length string field: its length byte holds at most 255. */
    static constexpr int kMaxStringFiledsLength = 255;

    /** Reads a PGN (3 bytes, low byte first); -1 when fewer than 3 bytes remain, the cursor
        then staying where it was. */
    static int readPGNFromParcel(Parcel* parcel);
    /** Writes the low 24 bits of a PGN as 3 bytes, low byte first. */
    static void writePGNToParcel(Parcel* parcel, int pgn);
    /** Writes the PGN, a 0 byte and the packet's two header bytes (answers reuse them). */
    static void writePGNHead(Parcel* parcel, const PGNPacket* packet, int pgn);
    /** Writes the PGN and the bytes 0x00, 0xFF, 0x02. */
    static void writePGNHead(Parcel* parcel, int pgn);

    /** Append one value to the payload; false, with nothing written, when it would not fit
        in one message (calcAvaliableLength). */
    static bool writeByteToParcel(Parcel* parcel, unsigned char value);
    static bool writeShortToParcel(Parcel* parcel, unsigned short value);
    /** Appends a text as a variable-length string field: ASCII when every character is, else
        UTF-16 little-endian; a text too long for the length byte is cut at a character
        boundary (calcStringFiledsLength). False, with nothing written, when the field would not
        fit in the message. */
    static bool writeStringToParcel(Parcel* parcel, const juce::String& text);
    /** Reads a variable-length string field at the cursor. When its length byte is sound and
        all of its bytes are there, the whole field is consumed and the result is true for a
        control byte of 0 or 1 (text set; ill-formed characters become U+FFFD) and false for
        another (text cleared). Otherwise false, with the cursor and the text unchanged. */
    static bool readStringFromParcel(Parcel* parcel, juce::String& text);
    /** The bytes writeStringToParcel would write for this text (2 to 255). */
    static int calcStringFiledsLength(const juce::String& text);
    /** True when the text's string field fits into the rest of the message. */
    static bool isCanWriteStringFileds(const Parcel* parcel, const juce::String& text);
    /** The payload bytes still free in the message held by the parcel (0 to 223); a parcel
        shorter than a head has them all. ("Avaliable" is the established name, kept.) */
    static int calcAvaliableLength(const Parcel* parcel);

    /** The wire size of a value type: 1, 2, 4 or 6 bytes, kVariableSize for type 4, 0 for a
        type outside 1 to 31. */
    static int getFiledsValueSize(int type);
    /** Whether a value suits its type's range. A void value or a type outside 1 to 31 is
        always in range; a value that is no number is out of range for a bounded type. */
    static bool isFiledsValueInRange(int type, const juce::var& value);

    /** True for the nine PGNs that have a field table. */
    static bool isSupportedPGN(int pgn);
    /** The highest field index of a PGN; 0 for a PGN without a table. */
    static int getHighestFiledsIndex(int pgn);
    /** The flag and value type of a field for a request or a command; false (outputs
        untouched) when the PGN, group function or index has no entry. */
    static bool getFiledsInfo(int pgn, eGroupFunction groupFunction, int index, int& flag, int& type);

private:
    friend class PGNPacket;

    /** Reads the declared field pairs of a packet whose head is read; the rules and their log
        lines are in the source. */
    static bool parseFileds(Parcel* parcel, PGNPacket* packet);
};
