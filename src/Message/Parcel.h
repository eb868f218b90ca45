#pragma once

#include <juce_core/juce_core.h>

class Bundle;

/** A flat, growable byte buffer with one write end and one read cursor.

    Every write appends at the end; every read consumes at the cursor. Values are little-endian,
    unaligned and unpadded. A read past the end returns a fixed value (0xFF, 0xFFFF, -1, false,
    "" or 0) and still advances the cursor, so dataAvail() may become negative: that is how a
    caller sees truncation. Nothing here throws or reads outside the data, whatever it holds.

    Parcels come from a process-wide pool of 10 (obtain / recycle / purgeAll, any thread).
    A Parcel itself is used by one thread at a time.
*/
class Parcel : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Parcel>;
    /** The value store of a Bundle: each value is owned by the map's holder. */
    using ValueMap = juce::HashMap<juce::String, juce::var*>;

    static constexpr int kPoolSize = 10;

    /** A pooled Parcel (size and position 0, buffer kept) or a new one with capacity 8. */
    static Ptr obtain();
    /** Hands this Parcel back to the pool: only when the caller's pointer is the only one and
        the pool has a free slot; otherwise nothing happens. */
    void recycle();
    /** Empties the pool. */
    static void purgeAll();
    /** Number of Parcels waiting in the pool. */
    static int pooledCount();

    const unsigned char* data() const { return m_pData; }
    int dataSize() const { return m_nSize; }
    int dataCapacity() const { return m_nCapacity; }
    int dataPosition() const { return m_nPosition; }
    /** size - position; negative after a read past the end. */
    int dataAvail() const { return m_nSize - m_nPosition; }

    /** Moves the read cursor only when 0 <= pos < dataSize(). The upper bound is exclusive on
        purpose (peers rely on it): on an empty Parcel the cursor cannot be set at all. */
    void setDataPosition(int pos);
    /** Replaces the whole content with n bytes; the cursor goes to 0. */
    void fillData(const void* src, int n);

    void writeByte(unsigned char value);
    void writeBool(bool value);
    void writeShort(unsigned short value);
    void writeInt(int value);
    void writeFloat(float value);
    void writeDouble(double value);
    /** n raw bytes, no length. */
    void writeData(const void* src, int n);
    /** int32 n, then n raw bytes. */
    void writeByteArray(const void* src, int n);
    /** int32 L (UTF-8 bytes + 1), the UTF-8 bytes, a zero byte. */
    void writeString(const juce::String& text);
    /** The object's own format (it writes its magic first). */
    void writeBundle(Bundle* bundle);
    /** int32 count, then key, int32 tag and value for each entry in the map's order.
        A value of a kind the format has no tag for is written as its key alone, while the
        count still includes it; this is the established format and is kept as it is. */
    void writeMap(ValueMap& map);

    unsigned char readByte();
    bool readBool();
    unsigned short readShort();
    int readInt();
    float readFloat();
    double readDouble();
    juce::String readString();
    /** Reads int32 N, then copies min(len, N) bytes into dst when all N are there; len is set
        to N (so a caller sees that its room was too small) and the cursor skips all N bytes. */
    void readByteArray(void* dst, int& len);
    /** Fills the bundle from the cursor (the object's own format). */
    void readBundle(Bundle* bundle);
    /** Reads a map into the given one; the map owns the values it receives. Stops at the first
        unknown tag or at a binary length larger than the bytes left. An empty binary value
        makes no entry: the established format loses it, and readers expect that. */
    void readMap(ValueMap& map);

    /** Writes the data bytes, and nothing else, to a file. */
    bool writeDataToFile(const juce::String& path);
    /** Replaces the content with a file's bytes (cursor 0); false for a missing file. */
    bool loadDataFromFile(const juce::String& path);

private:
    Parcel();
    explicit Parcel(int initialBytes);
    ~Parcel() override;
    friend struct juce::ContainerDeletePolicy<Parcel>;

    void freeBuffer();
    void allocArray(int n);
    /** Advances the cursor, saturating instead of overflowing. */
    void advance(juce::int64 n);
    /** True when n bytes can be read at the cursor. */
    bool canRead(juce::int64 n) const;

    int m_nCapacity = 0;
    int m_nSize = 0;
    unsigned char* m_pData = nullptr;
    int m_nPosition = 0;
    bool m_bPooled = false;

    JUCE_DECLARE_NON_COPYABLE(Parcel)
};
