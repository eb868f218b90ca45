#include "support/TestSupport.h"

#include <LmCom.h>

#include <climits>

using LmComTesting::bytesOf;
using LmComTesting::hex;
using LmComTesting::parcelOf;

TEST(ParcelTest, WritesExactLittleEndianBytes)
{
    auto p = Parcel::obtain();
    p->writeInt(1);
    p->writeShort(0x1234);
    p->writeByte(0xAB);
    p->writeBool(true);
    p->writeBool(false);
    p->writeInt(-2);
    EXPECT_EQ(bytesOf(p), "01 00 00 00 34 12 AB 01 00 FE FF FF FF");

    auto s = Parcel::obtain();
    s->writeString("");
    s->writeString("ab");
    s->writeString(juce::String::fromUTF8("\xC3\xA9")); // é: two UTF-8 bytes, one character
    EXPECT_EQ(bytesOf(s), "01 00 00 00 00 03 00 00 00 61 62 00 03 00 00 00 C3 A9 00");

    auto f = Parcel::obtain();
    f->writeFloat(1.0f);
    f->writeDouble(1.0);
    f->writeByteArray("xyz", 3);
    f->writeData("\x01\x02", 2);
    EXPECT_EQ(bytesOf(f), "00 00 80 3F 00 00 00 00 00 00 F0 3F 03 00 00 00 78 79 7A 01 02");

    EXPECT_EQ(f->readFloat(), 1.0f);
    EXPECT_EQ(f->readDouble(), 1.0);
    char room[8] = {};
    int len = sizeof room;
    f->readByteArray(room, len);
    EXPECT_EQ(len, 3);
    EXPECT_EQ(std::string(room, 3), "xyz");
    EXPECT_EQ(f->dataAvail(), 2);
}

TEST(ParcelTest, GrowsByDoublingFromEight)
{
    Parcel::purgeAll();
    auto fresh = Parcel::obtain();
    EXPECT_EQ(fresh->dataCapacity(), 8);
    EXPECT_EQ(fresh->dataSize(), 0);
    EXPECT_EQ(fresh->dataPosition(), 0);

    unsigned char bytes[100] = {};
    fresh->writeData(bytes, 8);
    EXPECT_EQ(fresh->dataCapacity(), 8);
    fresh->writeByte(1);
    EXPECT_EQ(fresh->dataCapacity(), 16);

    auto big = Parcel::obtain();
    big->writeData(bytes, 100);
    EXPECT_EQ(big->dataCapacity(), 128);
    EXPECT_EQ(big->dataSize(), 100);
}

TEST(ParcelTest, ReadsPastTheEndGiveFixedValuesAndStillAdvance)
{
    auto p = parcelOf("01 02 03");
    EXPECT_EQ(p->readInt(), -1);
    EXPECT_EQ(p->dataPosition(), 4);
    EXPECT_EQ(p->dataAvail(), -1);
    EXPECT_EQ(p->readByte(), 255);
    EXPECT_EQ(p->readShort(), 65535);
    EXPECT_FALSE(p->readBool());
    EXPECT_EQ(p->readString(), "");
    EXPECT_EQ(p->readDouble(), 0.0);
    EXPECT_EQ(p->readFloat(), 0.0f);

    // A string whose length field is there but whose bytes are not.
    auto s = parcelOf("05 00 00 00 61 62");
    EXPECT_EQ(s->readString(), "");
    EXPECT_EQ(s->dataPosition(), 9);

    // Fewer than four bytes for the length: L is -1, the cursor moves 4 + L.
    auto t = parcelOf("01 02");
    EXPECT_EQ(t->readString(), "");
    EXPECT_EQ(t->dataPosition(), 3);

    // The text ends at the first zero byte inside the L bytes.
    auto z = parcelOf("04 00 00 00 61 00 62 00");
    EXPECT_EQ(z->readString(), "a");
    EXPECT_EQ(z->dataAvail(), 0);
}

TEST(ParcelTest, SetDataPositionHasAnExclusiveUpperBound)
{
    auto empty = Parcel::obtain();
    empty->setDataPosition(0);
    EXPECT_EQ(empty->dataPosition(), 0);

    auto p = parcelOf("01 02 03 04");
    p->setDataPosition(3);
    EXPECT_EQ(p->dataPosition(), 3);
    p->setDataPosition(p->dataSize());
    EXPECT_EQ(p->dataPosition(), 3);
    p->setDataPosition(-1);
    EXPECT_EQ(p->dataPosition(), 3);
    p->setDataPosition(0);
    EXPECT_EQ(p->readInt(), 0x04030201);
}

TEST(ParcelTest, ReadByteArrayReportsTheStoredLength)
{
    auto p = parcelOf("05 00 00 00 01 02 03 04 05 07 00 00 00");
    unsigned char room[2] = {0, 0};
    int len = 2;
    p->readByteArray(room, len);
    EXPECT_EQ(len, 5);
    EXPECT_EQ(room[0], 1);
    EXPECT_EQ(room[1], 2);
    EXPECT_EQ(p->dataPosition(), 9);
    EXPECT_EQ(p->readInt(), 7);

    // Stored length runs past the data: nothing copied, len still the stored length.
    auto q = parcelOf("09 00 00 00 01 02");
    unsigned char out[16] = {0xEE};
    len = 16;
    q->readByteArray(out, len);
    EXPECT_EQ(len, 9);
    EXPECT_EQ(out[0], 0xEE);

    // Hostile lengths never move the cursor backwards or copy anything.
    auto r = parcelOf("00 00 00 80 01 02 03 04");
    len = 16;
    r->readByteArray(out, len);
    EXPECT_EQ(len, INT_MIN);
    EXPECT_GE(r->dataPosition(), 3);
    EXPECT_EQ(out[0], 0xEE);
}

TEST(ParcelTest, MapFormatWithItsQuirks)
{
    Parcel::ValueMap values;
    values.set("i", new juce::var(7));
    auto p = Parcel::obtain();
    p->writeMap(values);
    // count, key "i", tag 1, value 7
    EXPECT_EQ(bytesOf(p), "01 00 00 00 02 00 00 00 69 00 01 00 00 00 07 00 00 00");
    delete values["i"];

    // Every tag once; each entry reads back.
    Parcel::ValueMap all;
    all.set("b", new juce::var(true));
    all.set("d", new juce::var(2.5));
    all.set("s", new juce::var("text"));
    all.set("x", new juce::var(juce::MemoryBlock("\x01\x02", 2)));
    auto q = Parcel::obtain();
    q->writeMap(all);
    Parcel::ValueMap back;
    q->readMap(back);
    EXPECT_EQ(back.size(), 4);
    EXPECT_TRUE(back["b"]->isBool());
    EXPECT_EQ((double)*back["d"], 2.5);
    EXPECT_EQ(back["s"]->toString(), "text");
    EXPECT_EQ(back["x"]->getBinaryData()->getSize(), 2u);
    for (Parcel::ValueMap::Iterator it(all); it.next();)
        delete it.getValue();
    for (Parcel::ValueMap::Iterator it(back); it.next();)
        delete it.getValue();

    // A void value is written as its key alone while the count includes it.
    Parcel::ValueMap withVoid;
    withVoid.set("v", new juce::var());
    auto w = Parcel::obtain();
    w->writeMap(withVoid);
    EXPECT_EQ(bytesOf(w), "01 00 00 00 02 00 00 00 76 00");
    delete withVoid["v"];

    // An empty byte array is written with length 0 and reads back as no entry.
    Parcel::ValueMap withEmpty;
    withEmpty.set("e", new juce::var(juce::MemoryBlock()));
    auto e = Parcel::obtain();
    e->writeMap(withEmpty);
    EXPECT_EQ(bytesOf(e), "01 00 00 00 02 00 00 00 65 00 05 00 00 00 00 00 00 00");
    Parcel::ValueMap none;
    e->readMap(none);
    EXPECT_EQ(none.size(), 0);
    delete withEmpty["e"];
}

TEST(ParcelTest, ReadMapStopsOnDamagedStreams)
{
    // count 2, "a" = int 1, then "b" with unknown tag 9: "a" stays, reading stops.
    auto p = parcelOf("02 00 00 00 02 00 00 00 61 00 01 00 00 00 01 00 00 00"
                      "02 00 00 00 62 00 09 00 00 00");
    Parcel::ValueMap map;
    p->readMap(map);
    ASSERT_EQ(map.size(), 1);
    EXPECT_EQ((int)*map["a"], 1);
    delete map["a"];

    // A binary length beyond the data stops the reader instead of running past it.
    auto q = parcelOf("01 00 00 00 02 00 00 00 78 00 05 00 00 00 FF FF FF 7F 01 02");
    Parcel::ValueMap bin;
    q->readMap(bin);
    EXPECT_EQ(bin.size(), 0);

    // A repeated key takes the later value; the earlier one is freed (no leak under ASan).
    auto r = parcelOf("02 00 00 00 02 00 00 00 6B 00 01 00 00 00 01 00 00 00"
                      "02 00 00 00 6B 00 01 00 00 00 02 00 00 00");
    Parcel::ValueMap twice;
    r->readMap(twice);
    ASSERT_EQ(twice.size(), 1);
    EXPECT_EQ((int)*twice["k"], 2);
    delete twice["k"];

    // The void-value stream: count 2, "v" alone, then "i" = 1. The reader takes "i"'s
    // length field (2) as the tag of "v" and goes wrong from there, without crashing.
    auto v = parcelOf("02 00 00 00 02 00 00 00 76 00 02 00 00 00 69 00 01 00 00 00 01 00 00 00");
    Parcel::ValueMap damaged;
    v->readMap(damaged);
    EXPECT_LE(damaged.size(), 2);
    for (Parcel::ValueMap::Iterator it(damaged); it.next();)
        delete it.getValue();
}

TEST(ParcelTest, FilesHoldTheRawBytes)
{
    auto dir = juce::File::createTempFile("parcel");
    dir.createDirectory();
    auto path = dir.getChildFile("data.bin").getFullPathName();

    auto p = Parcel::obtain();
    p->writeInt(0x01020304);
    p->writeString("hi");
    ASSERT_TRUE(p->writeDataToFile(path));
    EXPECT_EQ(juce::File(path).getSize(), p->dataSize());

    auto q = Parcel::obtain();
    q->writeInt(99);
    ASSERT_TRUE(q->loadDataFromFile(path));
    EXPECT_EQ(bytesOf(q), bytesOf(p));
    EXPECT_EQ(q->dataPosition(), 0);
    EXPECT_EQ(q->readInt(), 0x01020304);

    // A shorter write truncates the old content.
    auto shorter = Parcel::obtain();
    shorter->writeByte(7);
    ASSERT_TRUE(shorter->writeDataToFile(path));
    EXPECT_EQ(juce::File(path).getSize(), 1);

    auto r = Parcel::obtain();
    r->writeInt(5);
    EXPECT_FALSE(r->loadDataFromFile(dir.getChildFile("missing").getFullPathName()));
    EXPECT_EQ(bytesOf(r), "05 00 00 00");
    EXPECT_FALSE(r->writeDataToFile(dir.getFullPathName())); // a folder is no file

    {
        juce::FileOutputStream out{juce::File(path)};
        out.setPosition(0);
        out.truncate();
    }
    EXPECT_TRUE(r->loadDataFromFile(path));
    EXPECT_EQ(r->dataSize(), 0);
    dir.deleteRecursively();
}

TEST(ParcelTest, PoolKeepsTenAndOnlySoleReferences)
{
    Parcel::purgeAll();
    auto shared = Parcel::obtain();
    auto other = shared;
    shared->recycle();
    EXPECT_EQ(Parcel::pooledCount(), 0);
    other = nullptr;

    // A recycled Parcel comes back empty but keeps its buffer.
    shared->writeData("0123456789abcdefX", 17);
    auto* raw = shared.get();
    shared->recycle();
    shared->recycle(); // already pooled: nothing
    EXPECT_EQ(Parcel::pooledCount(), 1);
    shared = nullptr;
    auto again = Parcel::obtain();
    EXPECT_EQ(again.get(), raw);
    EXPECT_EQ(again->dataSize(), 0);
    EXPECT_EQ(again->dataPosition(), 0);
    EXPECT_EQ(again->dataCapacity(), 32);

    std::vector<Parcel::Ptr> many;
    for (int i = 0; i < 11; ++i)
        many.push_back(Parcel::obtain());
    for (auto& p : many)
    {
        p->recycle();
        p = nullptr;
    }
    EXPECT_EQ(Parcel::pooledCount(), Parcel::kPoolSize);
    Parcel::purgeAll();
    EXPECT_EQ(Parcel::pooledCount(), 0);
}
