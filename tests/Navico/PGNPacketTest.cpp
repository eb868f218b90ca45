#include "support/TestSupport.h"

#include <LmCom.h>

using LmComTesting::bytesOf;
using LmComTesting::hex;
using LmComTesting::LogLines;
using LmComTesting::parcelOf;

namespace
{
class PGNPacketTest : public LmComTesting::LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        LogLines::clear();
    }
};

// Group-function PGN 126208, reserved byte, header bytes A5 5A.
const std::string kHead = "00 ED 01 00 A5 5A ";
// Command (1) for zone volume 130582, priority byte 0x28 (priority 8).
const std::string kCommand130582 = kHead + "01 16 FE 01 28 ";
// Request (0) for 130574, interval 1000, offset 250.
const std::string kRequest130574 = kHead + "00 0E FE 01 E8 03 00 00 FA 00 ";
// Request for 130581 (zone configuration), interval 0, offset 0.
const std::string kRequest130581 = kHead + "00 15 FE 01 00 00 00 00 00 00 ";

std::string logLine(int line, const std::string& text)
{
    return "E|Navico/PGNHelper|" + std::to_string(line) + "|PGNHelper|" + text;
}
} // namespace

TEST_F(PGNPacketTest, CommandIsReadAndAcknowledgedByteForByte)
{
    auto p = parcelOf(kCommand130582 + "03 01 00 02 05 04 02");
    auto packet = PGNPacket::parse(p.get());
    ASSERT_NE(packet, nullptr);
    EXPECT_EQ(p->dataAvail(), 0);
    EXPECT_EQ(packet->getPGN(), 126208);
    EXPECT_EQ(packet->getHeaderByte(0), 0xA5);
    EXPECT_EQ(packet->getHeaderByte(1), 0x5A);
    EXPECT_EQ(packet->getGroupFunction(), GF_Command);
    EXPECT_EQ(packet->getCommandPGN(), 130582);
    EXPECT_EQ(packet->getPriority(), 8);
    EXPECT_EQ(packet->getFiledsNumber(), 3);
    EXPECT_EQ(packet->getParsedFiledsCount(), 3);
    EXPECT_TRUE(packet->isValid());

    const _sFiledsValue* volume = packet->getFiledsValue(2);
    ASSERT_NE(volume, nullptr);
    EXPECT_EQ(volume->m_nPosition, 1);
    EXPECT_EQ(volume->m_nFlag, 0);
    EXPECT_EQ(volume->m_nType, 10);
    EXPECT_EQ((int)volume->m_value, 5);
    EXPECT_EQ(packet->getFiledsValue(4)->m_nFlag, 1);
    EXPECT_EQ(packet->getFiledsValue(3), nullptr);
    EXPECT_EQ(packet->getFiledsValueMap().size(), 3u);

    // Three good fields: two error bytes.
    const std::string ackHead = kHead + "02 16 FE 01 ";
    EXPECT_EQ(bytesOf(packet->getAckPacket()), ackHead + "00 03 00 00");
    EXPECT_EQ(bytesOf(packet->getNAckPacket()), ackHead + "00 03 44 44");

    packet->setTransmitErrorCode(2);
    EXPECT_FALSE(packet->isValid());
    EXPECT_EQ(bytesOf(packet->getAckPacket()), ackHead + "20 03 00 00");
    packet->setPGNErrorCode(PGN_AccessDenied);
    EXPECT_EQ(bytesOf(packet->getAckPacket()), ackHead + "23 FF");
    EXPECT_TRUE(LogLines::all().empty());
}

TEST_F(PGNPacketTest, ValuesOutOfRangeAreReportedPerFieldWithoutFailing)
{
    // Type 10 above 252 and type 3 above 3: the pairs after them are still read.
    auto p = parcelOf(kCommand130582 + "04 01 00 02 FD 04 07 05 01");
    auto packet = PGNPacket::parse(p.get());
    ASSERT_NE(packet, nullptr);
    EXPECT_EQ(packet->getErrorCode(0), 0);
    EXPECT_EQ(packet->getErrorCode(1), 3);
    EXPECT_EQ(packet->getErrorCode(2), 3);
    EXPECT_EQ(packet->getErrorCode(3), 0);
    EXPECT_EQ(packet->getErrorCode(4), 0); // no field there
    EXPECT_EQ(packet->getPGNErrorCode(), 0);
    EXPECT_EQ(bytesOf(packet->getAckPacket()), kHead + "02 16 FE 01 00 04 30 03");
    EXPECT_EQ(LogLines::all(), (std::vector<std::string>{logLine(230, "PGN 130582 filedsIndex 2 size error"),
                                                         logLine(230, "PGN 130582 filedsIndex 4 size error")}));

    // The value types at the edges of their ranges.
    auto zone = parcelOf(kRequest130581 + "09 03 80 06 84 07 7C 08 7D 04 03 05 FC 02 FD 0B FC FF 0C FD FF");
    auto config = PGNPacket::parse(zone.get());
    ASSERT_NE(config, nullptr);
    EXPECT_EQ((int)config->getFiledsValue(3)->m_value, -128);
    EXPECT_EQ((int)config->getFiledsValue(6)->m_value, -124);
    std::string errors;
    for (int position = 0; position < config->getParsedFiledsCount(); ++position)
        errors += std::to_string(config->getErrorCode(position));
    EXPECT_EQ(errors, "300300303"); // -128 -124 124 125 3 252 253 65532 65533

    auto file = parcelOf(kHead + "00 09 FE 01 00 00 00 00 00 00 02 04 FC FF FF FF 0E FF FF FF FF");
    auto status = PGNPacket::parse(file.get());
    ASSERT_NE(status, nullptr);
    EXPECT_EQ((juce::int64)status->getFiledsValue(4)->m_value, 4294967292LL); // type 7, unsigned
    EXPECT_EQ(status->getErrorCode(0), 0);
    EXPECT_EQ(status->getErrorCode(1), 0); // type 8: any value
}

TEST_F(PGNPacketTest, RepeatedIndexFailsWithCodeThree)
{
    auto p = parcelOf(kCommand130582 + "02 01 00 01 01");
    PGNPacket::Ptr failed;
    EXPECT_EQ(PGNPacket::parse(p.get(), failed), nullptr);
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(failed->getPGNErrorCode(), 3);
    EXPECT_EQ(failed->getParsedFiledsCount(), 1);
    EXPECT_EQ(bytesOf(failed->getAckPacket()), kHead + "02 16 FE 01 03 FF");
    EXPECT_EQ(bytesOf(failed->getNAckPacket()), kHead + "02 16 FE 01 00 02 44");
    EXPECT_EQ(LogLines::all(), std::vector<std::string>{logLine(196, "PGN 130582 filedsIndex 1 is repeated")});
}

TEST_F(PGNPacketTest, IndexOverTheHighestOrZeroFailsWithCodeFour)
{
    auto p = parcelOf(kRequest130574 + "02 01 02 08 00");
    PGNPacket::Ptr failed;
    EXPECT_EQ(PGNPacket::parse(p.get(), failed), nullptr);
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(failed->getGroupFunction(), GF_Request);
    EXPECT_EQ(failed->getInterval(), 1000u);
    EXPECT_EQ(failed->getOffset(), 250);
    EXPECT_EQ(failed->getPGNErrorCode(), 4);
    EXPECT_EQ(failed->getErrorCode(1), 1);
    EXPECT_EQ(failed->getFiledsValue(8)->m_nPosition, 1);
    EXPECT_EQ(bytesOf(failed->getAckPacket()), kHead + "02 0E FE 01 04 FF");
    EXPECT_EQ(LogLines::all(), std::vector<std::string>{logLine(205, "PGN 130574 filedsIndex 8 is over")});

    auto zero = parcelOf(kRequest130574 + "01 00 00");
    EXPECT_EQ(PGNPacket::parse(zero.get(), failed), nullptr);
    EXPECT_EQ(failed->getPGNErrorCode(), 4);
    EXPECT_EQ(LogLines::count(logLine(205, "PGN 130574 filedsIndex 0 is over")), 1);
}

TEST_F(PGNPacketTest, ValueCutShortFailsWithSizeError)
{
    // A type-6 value needs two bytes; one is there.
    auto p = parcelOf(kRequest130581 + "01 0B FC");
    PGNPacket::Ptr failed;
    EXPECT_EQ(PGNPacket::parse(p.get(), failed), nullptr);
    EXPECT_EQ(failed->getPGNErrorCode(), 4);
    EXPECT_EQ(failed->getErrorCode(0), 1);
    EXPECT_EQ(p->dataAvail(), 1); // the cut value was not read
    EXPECT_EQ(LogLines::all(), std::vector<std::string>{logLine(218, "PGN 130581 filedsIndex 11 size error")});

    // Texts (type 4): a length byte that counts itself and the control byte, then the text.
    auto text = parcelOf(kRequest130574 + "02 05 06 01 44 65 63 6B 06 03");
    auto packet = PGNPacket::parse(text.get());
    ASSERT_NE(packet, nullptr);
    EXPECT_TRUE(packet->getFiledsValue(5)->m_value.isVoid());
    EXPECT_EQ(packet->getFiledsValue(5)->m_nType, VT_String);
    EXPECT_EQ((int)packet->getFiledsValue(6)->m_value, 3);

    for (const char* field : {"05", "05 01 01", "05 00 01", "05 09 01 44 65 63 6B"})
    {
        auto bad = parcelOf(kRequest130574 + "01 " + field);
        EXPECT_EQ(PGNPacket::parse(bad.get(), failed), nullptr) << field;
        EXPECT_EQ(failed->getPGNErrorCode(), 4) << field;
        EXPECT_LE(bad->dataPosition(), bad->dataSize()) << field;
    }
}

TEST_F(PGNPacketTest, FewerPairsThanDeclaredKeepThePacketWithCodeFour)
{
    auto p = parcelOf(kCommand130582 + "03 01 00 02 05");
    auto packet = PGNPacket::parse(p.get());
    ASSERT_NE(packet, nullptr);
    EXPECT_EQ(packet->getFiledsNumber(), 3);
    EXPECT_EQ(packet->getParsedFiledsCount(), 2);
    EXPECT_EQ(packet->getPGNErrorCode(), 4);
    EXPECT_FALSE(packet->isValid());
    EXPECT_EQ(bytesOf(packet->getAckPacket()), kHead + "02 16 FE 01 04 FF");
    EXPECT_EQ(bytesOf(packet->getNAckPacket()), kHead + "02 16 FE 01 00 03 44");

    // No pairs declared: done at once, whatever follows.
    auto none = parcelOf(kCommand130582 + "00 01 01");
    auto empty = PGNPacket::parse(none.get());
    ASSERT_NE(empty, nullptr);
    EXPECT_TRUE(empty->isValid());
    EXPECT_EQ(bytesOf(empty->getAckPacket()), kHead + "02 16 FE 01 00 00");
    EXPECT_EQ(bytesOf(empty->getNAckPacket()), kHead + "02 16 FE 01 00 00");
}

TEST_F(PGNPacketTest, OtherGroupFunctionsPGNsAndShortHeadsFail)
{
    PGNPacket::Ptr failed;
    EXPECT_EQ(PGNPacket::parse(nullptr, failed), nullptr);
    EXPECT_EQ(failed, nullptr);

    // Acknowledgement and read-fields functions, and a PGN without a table: no error code.
    for (const std::string& message :
         {kHead + "02 16 FE 01 00 00", kHead + "03 16 FE 01 28 00", kHead + "01 0D FE 01 28 01 01 00"})
    {
        auto p = parcelOf(message);
        EXPECT_EQ(PGNPacket::parse(p.get(), failed), nullptr) << message;
        ASSERT_NE(failed, nullptr) << message;
        EXPECT_EQ(failed->getPGNErrorCode(), 0) << message;
    }

    // Every cut of a good message: no packet, or one that reports the missing pairs.
    const auto whole = LmComTesting::unhex(kRequest130574 + "03 01 02 05 06 01 44 65 63 6B 06 03");
    for (int length = 0; length < (int)whole.size(); ++length)
    {
        auto p = Parcel::obtain();
        p->fillData(whole.data(), length);
        auto packet = PGNPacket::parse(p.get(), failed);
        EXPECT_LE(p->dataPosition(), juce::jmax(0, length)) << length;
        EXPECT_EQ(failed == nullptr, length < 10) << length;
        if (packet != nullptr)
        {
            EXPECT_EQ(packet->getPGNErrorCode(), 4) << length;
        }
        EXPECT_EQ(packet != nullptr, length == 17 || length == 19 || length == 26) << length;
    }
    EXPECT_EQ(LogLines::count(logLine(218, "PGN 130574 filedsIndex 5 size error")), 6);
}

TEST_F(PGNPacketTest, RandomBytesNeverReadPastTheData)
{
    juce::Random random(20240611);
    const auto head = LmComTesting::unhex(kHead);
    const int pgns[] = {130569, 130570, 130571, 130572, 130574, 130581, 130582, 130584, 130585, 130573};
    int parsed = 0;
    for (int round = 0; round < 20000; ++round)
    {
        std::vector<unsigned char> bytes;
        if (round % 2 == 0)
        {
            // A sound head for a known PGN, then random bytes: reaches the field rules.
            bytes = head;
            bytes.push_back((unsigned char)random.nextInt(2));
            const int pgn = pgns[random.nextInt(10)];
            for (int shift : {0, 8, 16})
                bytes.push_back((unsigned char)(pgn >> shift));
        }
        const int tail = random.nextInt(48);
        for (int i = 0; i < tail; ++i)
            bytes.push_back((unsigned char)random.nextInt(256));

        auto p = Parcel::obtain();
        p->fillData(bytes.data(), (int)bytes.size());
        PGNPacket::Ptr failed;
        auto packet = PGNPacket::parse(p.get(), failed);
        ASSERT_LE(p->dataPosition(), p->dataSize()) << hex(bytes.data(), (int)bytes.size());
        if (packet != nullptr)
        {
            ++parsed;
            EXPECT_EQ(packet, failed);
            EXPECT_LE(packet->getParsedFiledsCount(), packet->getFiledsNumber());
        }
        if (failed != nullptr)
        {
            EXPECT_LE(failed->getAckPacket()->dataSize(), 12 + 128);
            EXPECT_LE(failed->getNAckPacket()->dataSize(), 12 + 128);
        }
    }
    EXPECT_GT(parsed, 100); // the random heads do reach the field rules
}
