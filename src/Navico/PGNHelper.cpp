#include "Navico/PGNHelper.h"

#include "LogBridge.h"
#include "Platform/detail/Utf8.h"

namespace
{
const char* const kLogFile = "Navico/PGNHelper";
const char* const kLogTag = "PGNHelper";
constexpr int kLineRepeated = 196;
constexpr int kLineOver = 205;
constexpr int kLineSize = 218;
constexpr int kLineRange = 230;

// Control bytes of a variable-length string field.
constexpr unsigned char kControlUnicode = 0;
constexpr unsigned char kControlAscii = 1;

struct FiledsDef
{
    unsigned char type;
    unsigned char flag;
};

/** A key field (flag 0). */
constexpr FiledsDef k(int type)
{
    return {(unsigned char)type, 0};
}

/** A field with flag 1. */
constexpr FiledsDef f(int type)
{
    return {(unsigned char)type, 1};
}

struct PGNTable
{
    int pgn;
    int highest;
    const FiledsDef* request;
    const FiledsDef* command;
};

/** A PGN's table: the highest index is the number of entries, the same for both functions. */
template <size_t N>
constexpr PGNTable table(int pgn, const FiledsDef (&request)[N], const FiledsDef (&command)[N])
{
    return {pgn, (int)N, request, command};
}

// Field index i (from 1) is entry i - 1.
constexpr FiledsDef k130569Request[] = {k(1),  k(11), k(5), k(7),  f(12), f(13), f(13), f(14),
                                        f(15), f(5),  f(5), f(16), f(10), f(8),  f(5)};
constexpr FiledsDef k130569Command[] = {k(1),  k(11), k(5), k(7),  k(12), f(13), f(13), f(14),
                                        f(15), f(5),  f(5), f(16), f(10), f(8),  f(5)};
constexpr FiledsDef k130570Request[] = {k(11), k(5), k(7),  k(17), f(4), f(6), f(6), f(5),
                                        f(8),  f(5), f(18), f(3),  f(4), f(4), f(4)};
constexpr FiledsDef k130570Command[] = {k(11), k(5), k(7),  f(17), f(4), f(6), f(6), f(5),
                                        f(8),  f(5), f(18), f(3),  f(4), f(4), f(4)};
constexpr FiledsDef k130571Request[] = {k(11), k(5), k(17), k(18), k(7), k(6), f(6), f(6), f(6), f(7), f(4)};
constexpr FiledsDef k130571Command[] = {f(11), f(5), f(17), f(18), f(7), f(6), f(6), f(6), f(6), f(7), f(4)};
constexpr FiledsDef k130572Request[] = {k(11), k(5), k(7), k(17), k(4), k(17), k(4), k(17), k(4)};
constexpr FiledsDef k130572Command[] = {f(11), f(5), f(7), f(17), f(4), f(17), f(4), f(17), f(4)};
constexpr FiledsDef k130574Request[] = {k(5), f(5), f(5), f(18), f(4), f(18), f(4)};
constexpr FiledsDef k130574Command[] = {k(5), k(5), k(5), k(18), k(4), f(18), f(4)};
constexpr FiledsDef k130581Request[] = {k(18), f(10), f(9), f(3), f(10), f(9), f(9), f(9), f(23), f(24), f(6), f(6)};
constexpr FiledsDef k130581Command[] = {k(18), k(10), k(9), k(3), k(10), k(9), k(9), k(9), k(23), k(24), k(6), k(6)};
constexpr FiledsDef k130582Request[] = {k(18), f(10), f(22), f(3), f(2)};
constexpr FiledsDef k130582Command[] = {k(18), k(10), k(22), f(3), f(2)};
constexpr FiledsDef k130584Request[] = {k(5), f(5), f(5), f(30), f(29), f(4), f(10)};
constexpr FiledsDef k130584Command[] = {k(5), k(5), f(5), k(30), k(29), k(4), k(10)};
constexpr FiledsDef k130585Request[] = {k(5), k(28), f(3), f(2), f(30)};
constexpr FiledsDef k130585Command[] = {k(5), k(28), k(3), f(2), k(30)};

constexpr PGNTable kTables[] = {
    table(130569, k130569Request, k130569Command), table(130570, k130570Request, k130570Command),
    table(130571, k130571Request, k130571Command), table(130572, k130572Request, k130572Command),
    table(130574, k130574Request, k130574Command), table(130581, k130581Request, k130581Command),
    table(130582, k130582Request, k130582Command), table(130584, k130584Request, k130584Command),
    table(130585, k130585Request, k130585Command),
};

const PGNTable* findTable(int pgn)
{
    for (const auto& table : kTables)
        if (table.pgn == pgn)
            return &table;
    return nullptr;
}

bool isAscii(const juce::String& text)
{
    for (auto p = text.getCharPointer(); !p.isEmpty(); ++p)
        if (*p >= 0x80)
            return false;
    return true;
}

/** The bytes of a text's string field after the length and control bytes: ASCII, or UTF-16
    little-endian, cut at a character boundary to fit the length byte. */
juce::MemoryBlock encodeStringFileds(const juce::String& text, unsigned char& control)
{
    constexpr int kMaxText = PGNHelper::kMaxStringFiledsLength - 2;
    juce::MemoryBlock bytes;
    if (isAscii(text))
    {
        control = kControlAscii;
        bytes.append(text.toRawUTF8(), (size_t)juce::jmin(text.length(), kMaxText));
        return bytes;
    }
    control = kControlUnicode;
    for (auto p = text.getCharPointer(); !p.isEmpty(); ++p)
    {
        juce::juce_wchar c = *p;
        unsigned char units[4];
        int n = 0;
        if (c >= 0x10000)
        {
            c -= 0x10000;
            const unsigned high = 0xD800 + (c >> 10), low = 0xDC00 + (c & 0x3FF);
            units[n++] = (unsigned char)high;
            units[n++] = (unsigned char)(high >> 8);
            units[n++] = (unsigned char)low;
            units[n++] = (unsigned char)(low >> 8);
        }
        else
        {
            units[n++] = (unsigned char)c;
            units[n++] = (unsigned char)(c >> 8);
        }
        if ((int)bytes.getSize() + n > kMaxText)
            break;
        bytes.append(units, (size_t)n);
    }
    return bytes;
}

/** UTF-16 little-endian text up to the first zero unit; a lone surrogate becomes U+FFFD and
    an odd last byte is ignored. */
juce::String decodeUtf16(const unsigned char* p, int n)
{
    juce::Array<juce::juce_wchar> chars;
    for (int i = 0; i + 1 < n; i += 2)
    {
        juce::juce_wchar c = (juce::juce_wchar)(p[i] | (p[i + 1] << 8));
        if (c == 0)
            break;
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < n)
        {
            const juce::juce_wchar low = (juce::juce_wchar)(p[i + 2] | (p[i + 3] << 8));
            if (low >= 0xDC00 && low < 0xE000)
            {
                chars.add(0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00));
                i += 2;
                continue;
            }
        }
        chars.add(c >= 0xD800 && c < 0xE000 ? (juce::juce_wchar)0xFFFD : c);
    }
    chars.add(0);
    return juce::String(juce::CharPointer_UTF32(chars.getRawDataPointer()));
}

/** The whole length of the string field at the cursor, or -1 when its length byte is missing
    or unsound, or its bytes are not all there. */
int stringFiledsLength(const Parcel* parcel)
{
    if (parcel->dataAvail() < 1)
        return -1;
    const int length = parcel->data()[parcel->dataPosition()];
    if (length < 2 || length > parcel->dataAvail())
        return -1;
    return length;
}

/** Advances the cursor over n bytes that are known to be there. setDataPosition cannot do it:
    it refuses the position just past the end. */
void skipBytes(Parcel* parcel, int n)
{
    for (int i = 0; i < n; ++i)
        parcel->readByte();
}

juce::var readFiledsValue(Parcel* parcel, int type, int size)
{
    switch (size)
    {
    case 1:
    {
        const unsigned char byte = parcel->readByte();
        return type == VT_SignedByte ? (int)(juce::int8)byte : (int)byte;
    }
    case 2:
        return (int)parcel->readShort();
    case 4:
        return (juce::int64)(juce::uint32)parcel->readInt();
    default:
    {
        juce::MemoryBlock bytes(parcel->data() + parcel->dataPosition(), (size_t)size);
        skipBytes(parcel, size);
        return bytes;
    }
    }
}
} // namespace

//==============================================================================
bool PGNHelper::parseFileds(Parcel* parcel, PGNPacket* packet)
{
    const int pgn = packet->m_nCommandPGN;
    const eGroupFunction groupFunction = packet->m_eGroupFunction;
    const PGNTable* table = findTable(pgn);
    if (table == nullptr || (groupFunction != GF_Request && groupFunction != GF_Command))
        return false;

    auto& logger = LogBridge::instance();
    for (int pair = 0; pair < packet->m_nFiledsNumber; ++pair)
    {
        // The pairs end with the data; what was read stays and the count check below reports
        // the pairs that are missing.
        if (parcel->dataAvail() < 1)
            break;

        const int index = parcel->readByte();
        if (packet->m_filedsValueMap.count(index) != 0)
        {
            logger.logErrorF(kLogFile, kLineRepeated, kLogTag, "PGN %d filedsIndex %d is repeated", pgn, index);
            packet->m_nPGNErrorCode = PGN_AccessDenied;
            return false;
        }

        _sFiledsValue* fileds = packet->addFileds(index);
        if (index < 1 || index > table->highest)
        {
            logger.logErrorF(kLogFile, kLineOver, kLogTag, "PGN %d filedsIndex %d is over", pgn, index);
            fileds->m_nErrorCode = FILEDS_Invalid;
            packet->m_nPGNErrorCode = PGN_RequestNotSupported;
            return false;
        }

        const FiledsDef& def = (groupFunction == GF_Request ? table->request : table->command)[index - 1];
        fileds->m_nFlag = def.flag;
        fileds->m_nType = def.type;
        const int size = getFiledsValueSize(def.type);
        const int needed = size == kVariableSize ? stringFiledsLength(parcel) : size;
        if (needed < 0 || (juce::int64)parcel->dataAvail() < needed)
        {
            logger.logErrorF(kLogFile, kLineSize, kLogTag, "PGN %d filedsIndex %d size error", pgn, index);
            fileds->m_nErrorCode = FILEDS_Invalid;
            packet->m_nPGNErrorCode = PGN_RequestNotSupported;
            return false;
        }

        if (size == kVariableSize)
            skipBytes(parcel, needed); // a text is stepped over; the packet keeps no value for it
        else
            fileds->m_value = readFiledsValue(parcel, def.type, size);

        if (!isFiledsValueInRange(def.type, fileds->m_value))
        {
            // The same text as a short value, deliberately: the log readers know these lines.
            logger.logErrorF(kLogFile, kLineRange, kLogTag, "PGN %d filedsIndex %d size error", pgn, index);
            fileds->m_nErrorCode = FILEDS_OutOfRange;
        }
    }

    if (packet->m_nFiledsNumber > packet->getParsedFiledsCount())
        packet->m_nPGNErrorCode = PGN_RequestNotSupported;
    return true;
}

//==============================================================================
int PGNHelper::readPGNFromParcel(Parcel* parcel)
{
    if (parcel == nullptr || parcel->dataAvail() < 3)
        return -1;
    const int low = parcel->readByte();
    const int middle = parcel->readByte();
    const int high = parcel->readByte();
    return low | (middle << 8) | (high << 16);
}

void PGNHelper::writePGNToParcel(Parcel* parcel, int pgn)
{
    if (parcel == nullptr)
        return;
    parcel->writeByte((unsigned char)(pgn & 0xFF));
    parcel->writeByte((unsigned char)((pgn >> 8) & 0xFF));
    parcel->writeByte((unsigned char)((pgn >> 16) & 0xFF));
}

void PGNHelper::writePGNHead(Parcel* parcel, const PGNPacket* packet, int pgn)
{
    if (parcel == nullptr || packet == nullptr)
        return;
    writePGNToParcel(parcel, pgn);
    parcel->writeByte(0);
    parcel->writeByte(packet->m_header[0]);
    parcel->writeByte(packet->m_header[1]);
}

void PGNHelper::writePGNHead(Parcel* parcel, int pgn)
{
    if (parcel == nullptr)
        return;
    writePGNToParcel(parcel, pgn);
    parcel->writeByte(0x00);
    parcel->writeByte(0xFF);
    parcel->writeByte(0x02);
}

bool PGNHelper::writeByteToParcel(Parcel* parcel, unsigned char value)
{
    if (calcAvaliableLength(parcel) < 1)
        return false;
    parcel->writeByte(value);
    return true;
}

bool PGNHelper::writeShortToParcel(Parcel* parcel, unsigned short value)
{
    if (calcAvaliableLength(parcel) < 2)
        return false;
    parcel->writeShort(value);
    return true;
}

bool PGNHelper::writeStringToParcel(Parcel* parcel, const juce::String& text)
{
    unsigned char control = 0;
    const auto bytes = encodeStringFileds(text, control);
    const int length = (int)bytes.getSize() + 2;
    if (calcAvaliableLength(parcel) < length)
        return false;
    parcel->writeByte((unsigned char)length);
    parcel->writeByte(control);
    parcel->writeData(bytes.getData(), (int)bytes.getSize());
    return true;
}

bool PGNHelper::readStringFromParcel(Parcel* parcel, juce::String& text)
{
    if (parcel == nullptr)
        return false;
    const int length = stringFiledsLength(parcel);
    if (length < 0)
        return false;
    const unsigned char* field = parcel->data() + parcel->dataPosition();
    const unsigned char control = field[1];
    juce::String decoded;
    if (control == kControlAscii)
        decoded = LmComDetail::decodeUtf8(field + 2, (size_t)(length - 2)); // UTF-8 is read too
    else if (control == kControlUnicode)
        decoded = decodeUtf16(field + 2, length - 2);
    skipBytes(parcel, length);
    text = decoded;
    return control == kControlAscii || control == kControlUnicode;
}

int PGNHelper::calcStringFiledsLength(const juce::String& text)
{
    unsigned char control = 0;
    return (int)encodeStringFileds(text, control).getSize() + 2;
}

bool PGNHelper::isCanWriteStringFileds(const Parcel* parcel, const juce::String& text)
{
    return calcStringFiledsLength(text) <= calcAvaliableLength(parcel);
}

int PGNHelper::calcAvaliableLength(const Parcel* parcel)
{
    if (parcel == nullptr)
        return 0;
    const int payload = juce::jmax(0, parcel->dataSize() - kHeadLength);
    return juce::jmax(0, kMaxPayloadLength - payload);
}

//==============================================================================
int PGNHelper::getFiledsValueSize(int type)
{
    constexpr int V = kVariableSize;
    // Sizes of types 0 to 31.
    static const int kSizes[32] = {0, 1, 1, 1, V, 1, 2, 4, 4, 1, 1, 1, 1, 2, 1, 1,
                                   1, 1, 1, 1, 1, 1, 1, 1, 1, 4, 2, 1, 1, 1, 6, 1};
    return type < VT_First || type > VT_Last ? 0 : kSizes[type];
}

bool PGNHelper::isFiledsValueInRange(int type, const juce::var& value)
{
    if (value.isVoid() || type < VT_First || type > VT_Last)
        return true;

    juce::int64 number = 0;
    const bool isNumber = value.isInt() || value.isInt64();
    if (isNumber)
        number = (juce::int64)value;
    const auto bitsSet = [&](juce::uint32 mask) { return juce::countNumberOfBits((juce::uint32)number & mask); };

    switch (type)
    {
    case 3:
        return isNumber && number >= 0 && number <= 3;
    case 5:
    case 10:
    case 11:
    case 12:
    case 17:
    case 18:
    case 23:
        return isNumber && number >= 0 && number <= 252;
    case 6:
        return isNumber && number >= 0 && number <= 65532;
    case 7:
        return isNumber && (juce::uint32)number <= 4294967292u;
    case 9:
        return isNumber && number >= -124 && number <= 124;
    case 25:
        return isNumber && bitsSet(0xFFFFFFFFu) <= 1;
    case 26:
        return isNumber && bitsSet(0xFFFFu) <= 1;
    case 27:
    case 31:
        return isNumber && bitsSet(0xFu) <= 1;
    default:
        return true;
    }
}

bool PGNHelper::isSupportedPGN(int pgn)
{
    return findTable(pgn) != nullptr;
}

int PGNHelper::getHighestFiledsIndex(int pgn)
{
    const PGNTable* table = findTable(pgn);
    return table == nullptr ? 0 : table->highest;
}

bool PGNHelper::getFiledsInfo(int pgn, eGroupFunction groupFunction, int index, int& flag, int& type)
{
    const PGNTable* table = findTable(pgn);
    if (table == nullptr || index < 1 || index > table->highest
        || (groupFunction != GF_Request && groupFunction != GF_Command))
        return false;
    const FiledsDef& def = (groupFunction == GF_Request ? table->request : table->command)[index - 1];
    flag = def.flag;
    type = def.type;
    return true;
}
