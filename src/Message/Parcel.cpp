#include "Message/Parcel.h"

#include "Message/Bundle.h"
#include "Platform/RegularFile.h"
#include "Platform/detail/Utf8.h"

#include <climits>
#include <cstring>
#include <new>

namespace
{
juce::CriticalSection& poolLock()
{
    static juce::CriticalSection lock;
    return lock;
}

Parcel::Ptr* poolSlots()
{
    static Parcel::Ptr slots[Parcel::kPoolSize];
    return slots;
}

enum ValueTag
{
    kTagInt = 1,
    kTagBool = 2,
    kTagDouble = 3,
    kTagString = 4,
    kTagBinary = 5
};
} // namespace

//==============================================================================
Parcel::Parcel()
{
    allocArray(8);
}

Parcel::Parcel(int initialBytes)
{
    allocArray(initialBytes);
}

Parcel::~Parcel()
{
    delete[] m_pData;
    m_pData = nullptr;
    m_nCapacity = 0;
}

Parcel::Ptr Parcel::obtain()
{
    const juce::ScopedLock lock(poolLock());
    auto* slots = poolSlots();
    for (int i = 0; i < kPoolSize; ++i)
    {
        if (slots[i] != nullptr)
        {
            Ptr parcel = std::move(slots[i]);
            slots[i] = nullptr;
            parcel->m_bPooled = false;
            return parcel;
        }
    }
    return Ptr(new Parcel());
}

void Parcel::recycle()
{
    const juce::ScopedLock lock(poolLock());
    if (getReferenceCount() > 1 || m_bPooled)
        return;
    auto* slots = poolSlots();
    for (int i = 0; i < kPoolSize; ++i)
    {
        if (slots[i] == nullptr)
        {
            m_bPooled = true;
            freeBuffer();
            slots[i] = this;
            return;
        }
    }
}

void Parcel::purgeAll()
{
    // Release outside the lock: a Parcel's destructor needs no pool.
    Ptr released[kPoolSize];
    {
        const juce::ScopedLock lock(poolLock());
        auto* slots = poolSlots();
        for (int i = 0; i < kPoolSize; ++i)
            released[i] = std::move(slots[i]);
    }
}

int Parcel::pooledCount()
{
    const juce::ScopedLock lock(poolLock());
    int count = 0;
    auto* slots = poolSlots();
    for (int i = 0; i < kPoolSize; ++i)
        count += slots[i] != nullptr ? 1 : 0;
    return count;
}

//==============================================================================
void Parcel::freeBuffer()
{
    m_nSize = 0;
    m_nPosition = 0;
}

void Parcel::allocArray(int n)
{
    if (n <= 0)
        return;
    const juce::int64 needed = (juce::int64)m_nSize + n;
    if (needed <= m_nCapacity)
        return;
    if (needed > INT_MAX)
        return;

    juce::int64 capacity = m_nCapacity;
    while (capacity < needed)
        capacity = capacity == 0 ? 8 : capacity * 2;
    capacity = juce::jmin(capacity, (juce::int64)INT_MAX);

    auto* grown = new (std::nothrow) unsigned char[(size_t)capacity];
    if (grown == nullptr)
        return;
    if (m_nSize > 0)
        std::memcpy(grown, m_pData, (size_t)m_nSize);
    delete[] m_pData;
    m_pData = grown;
    m_nCapacity = (int)capacity;
}

void Parcel::advance(juce::int64 n)
{
    m_nPosition = (int)juce::jlimit((juce::int64)0, (juce::int64)INT_MAX, (juce::int64)m_nPosition + n);
}

bool Parcel::canRead(juce::int64 n) const
{
    return n >= 0 && (juce::int64)m_nPosition + n <= m_nSize;
}

void Parcel::setDataPosition(int pos)
{
    if (pos >= 0 && pos < m_nSize)
        m_nPosition = pos;
}

void Parcel::fillData(const void* src, int n)
{
    freeBuffer();
    if (src == nullptr || n <= 0)
        return;
    allocArray(n);
    if (m_nCapacity < n)
        return;
    std::memcpy(m_pData, src, (size_t)n);
    m_nSize = n;
}

//==============================================================================
void Parcel::writeData(const void* src, int n)
{
    if (src == nullptr || n <= 0)
        return;
    allocArray(n);
    if ((juce::int64)m_nSize + n > m_nCapacity)
        return;
    std::memcpy(m_pData + m_nSize, src, (size_t)n);
    m_nSize += n;
}

void Parcel::writeByte(unsigned char value)
{
    writeData(&value, 1);
}

void Parcel::writeBool(bool value)
{
    writeByte(value ? 1 : 0);
}

void Parcel::writeShort(unsigned short value)
{
    const unsigned char bytes[2] = {(unsigned char)(value & 0xFF), (unsigned char)(value >> 8)};
    writeData(bytes, 2);
}

void Parcel::writeInt(int value)
{
    const auto bits = (juce::uint32)value;
    const unsigned char bytes[4] = {(unsigned char)bits, (unsigned char)(bits >> 8), (unsigned char)(bits >> 16),
                                    (unsigned char)(bits >> 24)};
    writeData(bytes, 4);
}

void Parcel::writeFloat(float value)
{
    juce::int32 bits;
    std::memcpy(&bits, &value, 4);
    writeInt(bits);
}

void Parcel::writeDouble(double value)
{
    juce::uint64 bits;
    std::memcpy(&bits, &value, 8);
    unsigned char bytes[8];
    for (int i = 0; i < 8; ++i)
        bytes[i] = (unsigned char)(bits >> (8 * i));
    writeData(bytes, 8);
}

void Parcel::writeByteArray(const void* src, int n)
{
    if (n < 0 || (src == nullptr && n > 0))
        n = 0;
    writeInt(n);
    writeData(src, n);
}

void Parcel::writeString(const juce::String& text)
{
    const auto utf8 = text.toUTF8();
    const int bytes = (int)text.getNumBytesAsUTF8();
    writeInt(bytes + 1);
    writeData(utf8.getAddress(), bytes);
    writeByte(0);
}

void Parcel::writeBundle(Bundle* bundle)
{
    if (bundle != nullptr)
        bundle->writeToParcel(this);
}

void Parcel::writeMap(ValueMap& map)
{
    writeInt(map.size());
    for (ValueMap::Iterator it(map); it.next();)
    {
        writeString(it.getKey());
        const juce::var* value = it.getValue();
        if (value == nullptr)
            continue;

        // The kinds are tested in this order on purpose; readers depend on the resulting tags.
        if (value->isInt())
        {
            writeInt(kTagInt);
            writeInt((int)*value);
        }
        else if (value->isBool())
        {
            writeInt(kTagBool);
            writeBool((bool)*value);
        }
        else if (value->isString())
        {
            writeInt(kTagString);
            writeString(value->toString());
        }
        else if (value->isBinaryData())
        {
            writeInt(kTagBinary);
            if (auto* block = value->getBinaryData())
                writeByteArray(block->getData(), (int)block->getSize());
            else
                writeInt(0);
        }
        else if (value->isDouble())
        {
            writeInt(kTagDouble);
            writeDouble((double)*value);
        }
        // Any other kind: the key alone, deliberately (see the header).
    }
}

//==============================================================================
unsigned char Parcel::readByte()
{
    unsigned char value = 0xFF;
    if (canRead(1))
        value = m_pData[m_nPosition];
    advance(1);
    return value;
}

bool Parcel::readBool()
{
    bool value = false;
    if (canRead(1))
        value = m_pData[m_nPosition] != 0;
    advance(1);
    return value;
}

unsigned short Parcel::readShort()
{
    unsigned short value = 0xFFFF;
    if (canRead(2))
        value = (unsigned short)(m_pData[m_nPosition] | (m_pData[m_nPosition + 1] << 8));
    advance(2);
    return value;
}

int Parcel::readInt()
{
    int value = -1;
    if (canRead(4))
    {
        const unsigned char* p = m_pData + m_nPosition;
        value = (int)((juce::uint32)p[0] | ((juce::uint32)p[1] << 8) | ((juce::uint32)p[2] << 16)
                      | ((juce::uint32)p[3] << 24));
    }
    advance(4);
    return value;
}

float Parcel::readFloat()
{
    float value = 0.0f;
    if (canRead(4))
    {
        const auto bits = (juce::uint32)readInt();
        std::memcpy(&value, &bits, 4);
        return value;
    }
    advance(4);
    return value;
}

double Parcel::readDouble()
{
    double value = 0.0;
    if (canRead(8))
    {
        juce::uint64 bits = 0;
        for (int i = 0; i < 8; ++i)
            bits |= (juce::uint64)m_pData[m_nPosition + i] << (8 * i);
        std::memcpy(&value, &bits, 8);
    }
    advance(8);
    return value;
}

juce::String Parcel::readString()
{
    const int length = readInt();
    const int start = m_nPosition;
    // A length below -1 counts as -1: the cursor never runs backwards over data already read.
    advance(juce::jmax(length, -1));
    if (length <= 0 || (juce::int64)start + length > m_nSize)
        return {};
    return LmComDetail::decodeUtf8(m_pData + start, (size_t)length);
}

void Parcel::readByteArray(void* dst, int& len)
{
    const int stored = readInt();
    const int room = len;
    len = stored;
    if (stored > 0 && canRead(stored) && dst != nullptr && room > 0)
        std::memcpy(dst, m_pData + m_nPosition, (size_t)juce::jmin(room, stored));
    advance(juce::jmax(stored, -1));
}

void Parcel::readBundle(Bundle* bundle)
{
    if (bundle != nullptr)
        bundle->createFromParcel(this);
}

void Parcel::readMap(ValueMap& map)
{
    const int count = readInt();
    if (count < 1)
        return;

    for (int i = 0; i < count; ++i)
    {
        const auto key = readString();
        const int tag = readInt();
        juce::var* value = nullptr;
        switch (tag)
        {
        case kTagInt:
            value = new juce::var(readInt());
            break;
        case kTagBool:
            value = new juce::var(readBool());
            break;
        case kTagDouble:
            value = new juce::var(readDouble());
            break;
        case kTagString:
            value = new juce::var(readString());
            break;
        case kTagBinary:
        {
            const int length = readInt();
            if (length == 0)
                continue; // an empty byte array makes no entry (established format)
            // The format does not promise that the bytes are there: a damaged stream stops here.
            if (!canRead(length))
                return;
            value = new juce::var(juce::MemoryBlock(m_pData + m_nPosition, (size_t)length));
            advance(length);
            break;
        }
        default:
            return;
        }

        if (map.contains(key))
            delete map[key];
        map.set(key, value);
    }
}

//==============================================================================
static juce::File fileFromPath(const juce::String& path)
{
    // A path made by an unchecked constructor can make JUCE's path handling loop for ever.
    return juce::File::getCurrentWorkingDirectory().getChildFile(LmComDetail::checkedText(path));
}

bool Parcel::writeDataToFile(const juce::String& path)
{
    if (path.isEmpty())
        return false;
    auto file = fileFromPath(path);
    if (!file.existsAsFile() && !file.create().wasOk())
        return false;

    juce::FileOutputStream out(file, 32768);
    if (out.failedToOpen())
        return false;
    out.setPosition(0);
    out.truncate();
    const bool written = m_nSize == 0 || out.write(m_pData, (size_t)m_nSize);
    out.flush();
    return written && out.getStatus().wasOk();
}

bool Parcel::loadDataFromFile(const juce::String& path)
{
    if (path.isEmpty())
        return false;
    // A device or FIFO is refused, and no more than a Parcel can hold is read.
    const auto file = fileFromPath(path);
    juce::MemoryBlock content;
    if (Platform::RegularFile::read(file.getFullPathName().toRawUTF8(), INT_MAX, content)
        != Platform::RegularFile::Status::read)
        return false;
    if (content.getSize() == 0)
        freeBuffer();
    else
        fillData(content.getData(), (int)content.getSize());
    return true;
}
