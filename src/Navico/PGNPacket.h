#pragma once

#include "Message/Parcel.h"

#include <juce_core/juce_core.h>

#include <map>
#include <memory>
#include <vector>

/** The function of an NMEA 2000 group-function message (PGN 126208). Only requests and
    commands are parsed; acknowledgements are what this side sends back. */
enum eGroupFunction : int
{
    GF_Request = 0,
    GF_Command = 1,
    GF_Acknowledge = 2
};

/** The PGN error code of an acknowledgement (low nibble of its error byte). Parsing sets
    PGN_AccessDenied (3) for a repeated field index, and PGN_RequestNotSupported (4) for an
    index over the highest, a value cut short, or fewer pairs than declared. */
enum ePGNErrorCode : int
{
    PGN_Acknowledge = 0,
    PGN_NotSupported = 1,
    PGN_NotAvailable = 2,
    PGN_AccessDenied = 3,
    PGN_RequestNotSupported = 4,
    PGN_TagNotSupported = 5,
    PGN_ReadWriteNotSupported = 6
};

/** The value type of a field (1 to 31). The type gives the size of the value on the wire
    (PGNHelper::getFiledsValueSize) and its range (PGNHelper::isFiledsValueInRange); only the
    types that stand out are named. */
enum eValueType : int
{
    VT_First = 1,
    VT_String = 4,     // variable length: length byte, control byte, text
    VT_SignedByte = 9, // the only signed type
    VT_Bytes6 = 30,    // six raw bytes
    VT_Last = 31
};

/** The error code of one field in an acknowledgement. */
enum eFiledsErrorCode : int
{
    FILEDS_Good = 0,
    FILEDS_Invalid = 1, // index out of range or value missing
    FILEDS_OutOfRange = 3
};

/** One received field of a parameter group ("fileds" is the established spelling, kept on
    purpose: peers and callers use these names). */
struct _sFiledsValue
{
    int m_nIndex = 0;    // field index, 1 up to the PGN's highest
    int m_nPosition = 0; // 0-based position of the pair in the message
    int m_nFlag = 0;     // from the field table: 0 for a key field, else 1
    int m_nType = 0;     // eValueType
    /** An int for 1- and 2-byte types (signed for type 9), an int64 (0 to 2^32 - 1) for
        4-byte types, a binary block for 6-byte types; void when missing and for type 4. */
    juce::var m_value;
    int m_nErrorCode = FILEDS_Good; // eFiledsErrorCode
};

/** One NMEA 2000 group-function request or command addressed to one of the nine
    entertainment parameter groups (130569 to 130585), as read by parse(), with the
    acknowledgement built from it.

    Made only by parse(); reference counted; used by one thread at a time. Every byte it reads
    is untrusted: a parse never reads outside the data.
*/
class PGNPacket : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<PGNPacket>;
    using FiledsValueMap = std::map<int, _sFiledsValue*>;

    /** Reads one message at the parcel's cursor. Returns the packet, or null when the message
        is cut short, its group function is not 0 or 1, its commanded PGN is none of the nine,
        or a field pair is bad (repeated index, index 0 or over the highest, value cut short).
        A value out of its range does not fail the parse: its field carries error 3. */
    static Ptr parse(Parcel* parcel);

    /** As parse(parcel); in addition `packet` receives the packet as far as it was read, also
        when the parse fails, so that the caller can answer with its error codes (getAckPacket
        or getNAckPacket). It is null only when not even the head (PGN, header bytes, group
        function and commanded PGN) was there. */
    static Ptr parse(Parcel* parcel, Ptr& packet);

    ~PGNPacket() override;

    /** The message's own PGN (126208 for group functions). */
    int getPGN() const { return m_nPGN; }
    /** One of the two header bytes after the reserved byte (i is 0 or 1; 0 otherwise). */
    int getHeaderByte(int i) const;
    eGroupFunction getGroupFunction() const { return m_eGroupFunction; }
    /** The PGN the request or command is about. */
    int getCommandPGN() const { return m_nCommandPGN; }
    /** Request only: the transmission interval and offset. */
    juce::uint32 getInterval() const { return m_nInterval; }
    int getOffset() const { return m_nOffset; }
    /** Command only: the priority (low four bits of its byte). */
    int getPriority() const { return m_nPriority; }

    /** The number of field pairs the message declares. */
    int getFiledsNumber() const { return m_nFiledsNumber; }
    /** The number of field records made, in message order (a failed pair included). */
    int getParsedFiledsCount() const { return (int)m_fileds.size(); }
    const FiledsValueMap& getFiledsValueMap() const { return m_filedsValueMap; }
    /** The field with this index, or null. Owned by the packet. */
    const _sFiledsValue* getFiledsValue(int index) const;
    /** The field received at this position, or null. Owned by the packet. */
    const _sFiledsValue* getFiledsAt(int position) const;
    /** The error code of the field received at this position; 0 when there is none. */
    int getErrorCode(int position) const;

    void setPGNErrorCode(int code) { m_nPGNErrorCode = code; }
    int getPGNErrorCode() const { return m_nPGNErrorCode; }
    /** The second error code, sent in the high nibble of the acknowledgement's error byte
        (transmission interval or priority). */
    void setTransmitErrorCode(int code) { m_nTransmitErrorCode = code; }
    int getTransmitErrorCode() const { return m_nTransmitErrorCode; }

    /** True for a request or command with both error codes 0. */
    bool isValid() const;

    /** The acknowledgement (group function 2) that answers this packet: a new Parcel with the
        head, the error byte, then either the field errors two to a byte or, for PGN error
        code 3 or 4, the byte 0xFF. */
    Parcel::Ptr getAckPacket() const;
    /** The acknowledgement that refuses the whole packet: every parsed field reported with
        error 4. */
    Parcel::Ptr getNAckPacket() const;

private:
    PGNPacket() = default;
    friend class PGNHelper;

    /** Makes a record for the next pair; the map holds it under its index. */
    _sFiledsValue* addFileds(int index);
    void writeAckHead(Parcel* parcel) const;

    int m_nPGN = 0;
    unsigned char m_header[2] = {0, 0};
    eGroupFunction m_eGroupFunction = GF_Request;
    int m_nCommandPGN = 0;
    juce::uint32 m_nInterval = 0;
    int m_nOffset = 0;
    int m_nPriority = 0;
    int m_nFiledsNumber = 0;
    int m_nPGNErrorCode = PGN_Acknowledge;
    int m_nTransmitErrorCode = 0;
    std::vector<std::unique_ptr<_sFiledsValue>> m_fileds; // by position, owns the records
    FiledsValueMap m_filedsValueMap;                      // by index

    JUCE_DECLARE_NON_COPYABLE(PGNPacket)
};
