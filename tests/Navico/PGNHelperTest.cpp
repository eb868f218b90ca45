#include "support/TestSupport.h"

#include <LmCom.h>

using LmComTesting::bytesOf;
using LmComTesting::hex;
using LmComTesting::parcelOf;

namespace
{
juce::String repeated(juce::juce_wchar c, int n)
{
    juce::String text;
    for (int i = 0; i < n; ++i)
        text += c;
    return text;
}
} // namespace

TEST(PGNHelperTest, HeadsAndPGNsAreByteExact)
{
    auto p = Parcel::obtain();
    PGNHelper::writePGNToParcel(p.get(), 130582);
    PGNHelper::writePGNHead(p.get(), 130569);
    EXPECT_EQ(bytesOf(p), "16 FE 01 09 FE 01 00 FF 02");

    auto message = parcelOf("00 ED 01 00 A5 5A 01 16 FE 01 28 00");
    auto packet = PGNPacket::parse(message.get());
    ASSERT_NE(packet, nullptr);
    auto answer = Parcel::obtain();
    PGNHelper::writePGNHead(answer.get(), packet.get(), 126208);
    EXPECT_EQ(bytesOf(answer), "00 ED 01 00 A5 5A");

    auto short2 = parcelOf("16 FE");
    EXPECT_EQ(PGNHelper::readPGNFromParcel(short2.get()), -1);
    EXPECT_EQ(short2->dataPosition(), 0);
    EXPECT_EQ(PGNHelper::readPGNFromParcel(nullptr), -1);
    p->setDataPosition(0);
    EXPECT_EQ(PGNHelper::readPGNFromParcel(p.get()), 130582);
}

TEST(PGNHelperTest, SizesRangesAndTables)
{
    std::string sizes;
    for (int type = 0; type <= 32; ++type)
        sizes += std::to_string(PGNHelper::getFiledsValueSize(type)) + " ";
    EXPECT_EQ(sizes, "0 1 1 1 65535 1 2 4 4 1 1 1 1 2 1 1 1 1 1 1 1 1 1 1 1 4 2 1 1 1 6 1 0 ");

    struct Case
    {
        int type;
        juce::var value;
        bool inRange;
    };
    const Case cases[] = {
        {3, 3, true},
        {3, 4, false},
        {5, 252, true},
        {23, 253, false},
        {6, 65532, true},
        {6, 65533, false},
        {7, (juce::int64)4294967292LL, true},
        {7, (juce::int64)4294967293LL, false},
        {9, -124, true},
        {9, -125, false},
        {9, 124, true},
        {9, 125, false},
        {25, (juce::int64)0x80000000LL, true},
        {25, (juce::int64)0x80000001LL, false},
        {25, 0, true},
        {26, 0x18000, true},
        {26, 0x8001, false},
        {27, 0x30, true},
        {27, 0x3, false},
        {31, 0x18, true},
        {8, -1, true},
        {1, 255, true},
        {0, 99999, true},
        {32, -5, true},
        {3, juce::var(), true},
        {3, "3", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PGNHelper::isFiledsValueInRange(c.type, c.value), c.inRange)
            << "type " << c.type << " value " << c.value.toString();

    const int highest[] = {15, 15, 11, 9, 7, 12, 5, 7, 5};
    const int pgns[] = {130569, 130570, 130571, 130572, 130574, 130581, 130582, 130584, 130585};
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(PGNHelper::getHighestFiledsIndex(pgns[i]), highest[i]);
    EXPECT_FALSE(PGNHelper::isSupportedPGN(130573));
    EXPECT_EQ(PGNHelper::getHighestFiledsIndex(130573), 0);

    int flag = -1, type = -1;
    EXPECT_TRUE(PGNHelper::getFiledsInfo(130585, GF_Request, 5, flag, type));
    EXPECT_EQ(flag, 1);
    EXPECT_EQ(type, 30);
    EXPECT_TRUE(PGNHelper::getFiledsInfo(130585, GF_Command, 5, flag, type));
    EXPECT_EQ(flag, 0);
    EXPECT_FALSE(PGNHelper::getFiledsInfo(130585, GF_Command, 6, flag, type));
    EXPECT_FALSE(PGNHelper::getFiledsInfo(130585, GF_Acknowledge, 1, flag, type));
    EXPECT_EQ(type, 30);
}

TEST(PGNHelperTest, StringFiledsAreWrittenAndReadInTheVariableLengthForm)
{
    auto p = Parcel::obtain();
    EXPECT_TRUE(PGNHelper::writeStringToParcel(p.get(), "Deck"));
    EXPECT_TRUE(PGNHelper::writeStringToParcel(p.get(), ""));
    const auto unicode = juce::String::fromUTF8("\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80"); // é 中 U+1F600
    EXPECT_TRUE(PGNHelper::writeStringToParcel(p.get(), unicode));
    EXPECT_EQ(bytesOf(p), "06 01 44 65 63 6B 02 01 0A 00 E9 00 2D 4E 3D D8 00 DE");

    juce::String text;
    EXPECT_TRUE(PGNHelper::readStringFromParcel(p.get(), text));
    EXPECT_EQ(text, "Deck");
    EXPECT_TRUE(PGNHelper::readStringFromParcel(p.get(), text));
    EXPECT_EQ(text, "");
    EXPECT_TRUE(PGNHelper::readStringFromParcel(p.get(), text));
    EXPECT_EQ(text, unicode);
    EXPECT_EQ(p->dataAvail(), 0);

    // Too long for the length byte: cut at a character, never inside a surrogate pair.
    EXPECT_EQ(PGNHelper::calcStringFiledsLength(repeated('a', 300)), 255);
    EXPECT_EQ(PGNHelper::calcStringFiledsLength(repeated(0x4E2D, 200)), 254);
    EXPECT_EQ(PGNHelper::calcStringFiledsLength(repeated(0x4E2D, 125) + juce::String::charToString(0x1F600)), 252);
    // One message carries at most 223 payload bytes: a field that would not fit is not written.
    auto longText = Parcel::obtain();
    EXPECT_FALSE(PGNHelper::writeStringToParcel(longText.get(), repeated('a', 222)));
    EXPECT_EQ(longText->dataSize(), 0);
    EXPECT_TRUE(PGNHelper::writeStringToParcel(longText.get(), repeated('a', 221)));
    EXPECT_EQ(longText->dataSize(), 223);
    EXPECT_TRUE(PGNHelper::readStringFromParcel(longText.get(), text));
    EXPECT_EQ(text, repeated('a', 221));
}

TEST(PGNHelperTest, BadStringFiledsAreRefusedWithinTheData)
{
    juce::String text = "kept";
    for (const char* field : {"", "00 01", "01 01", "07 01 41 42"})
    {
        auto p = parcelOf(field);
        EXPECT_FALSE(PGNHelper::readStringFromParcel(p.get(), text)) << field;
        EXPECT_EQ(p->dataPosition(), 0) << field;
    }
    EXPECT_EQ(text, "kept");
    EXPECT_FALSE(PGNHelper::readStringFromParcel(nullptr, text));

    // A sound length with an unknown control byte: consumed, no text.
    auto unknown = parcelOf("04 07 41 42 09");
    EXPECT_FALSE(PGNHelper::readStringFromParcel(unknown.get(), text));
    EXPECT_EQ(text, "");
    EXPECT_EQ(unknown->dataAvail(), 1);

    // Ill-formed text: a lone surrogate, an odd byte, invalid UTF-8, a zero that ends it.
    auto odd = parcelOf("07 00 00 D8 41 00 42 05 01 C3 28 41 05 01 41 00 42");
    EXPECT_TRUE(PGNHelper::readStringFromParcel(odd.get(), text));
    EXPECT_EQ(text, juce::String::fromUTF8("\xEF\xBF\xBD"
                                           "A"));
    EXPECT_TRUE(PGNHelper::readStringFromParcel(odd.get(), text));
    EXPECT_EQ(text, juce::String::fromUTF8("\xEF\xBF\xBD(A"));
    EXPECT_TRUE(PGNHelper::readStringFromParcel(odd.get(), text));
    EXPECT_EQ(text, "A");
    EXPECT_EQ(odd->dataAvail(), 0);
}

TEST(PGNHelperTest, WritersKeepToOneMessage)
{
    auto p = Parcel::obtain();
    EXPECT_EQ(PGNHelper::calcAvaliableLength(p.get()), 223);
    PGNHelper::writePGNHead(p.get(), 130569);
    EXPECT_EQ(PGNHelper::calcAvaliableLength(p.get()), 223);
    EXPECT_EQ(PGNHelper::calcAvaliableLength(nullptr), 0);

    std::vector<unsigned char> filler(219, 0xAA);
    p->writeData(filler.data(), (int)filler.size());
    EXPECT_TRUE(PGNHelper::writeShortToParcel(p.get(), 0x1234));
    EXPECT_EQ(PGNHelper::calcAvaliableLength(p.get()), 2);
    EXPECT_TRUE(PGNHelper::isCanWriteStringFileds(p.get(), ""));
    EXPECT_FALSE(PGNHelper::isCanWriteStringFileds(p.get(), "a"));
    EXPECT_FALSE(PGNHelper::writeStringToParcel(p.get(), "a"));
    EXPECT_TRUE(PGNHelper::writeByteToParcel(p.get(), 0x01));
    EXPECT_FALSE(PGNHelper::writeShortToParcel(p.get(), 0x5678));
    EXPECT_TRUE(PGNHelper::writeByteToParcel(p.get(), 0x02));
    EXPECT_FALSE(PGNHelper::writeByteToParcel(p.get(), 0x03));
    EXPECT_FALSE(PGNHelper::writeByteToParcel(nullptr, 0x03));
    EXPECT_EQ(p->dataSize(), 6 + 223);
    EXPECT_EQ(hex(p->data() + 225, 4), "34 12 01 02");
}
