#include "main/applicationapi/CarInfoDecoder.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{
using LmComTesting::unhex;

/** Collects what a frame gives as "(item,value)" text. */
class Collector : public CarInfoDecoder
{
public:
    Result decode(const std::vector<unsigned char>& frame)
    {
        values.clear();
        // A buffer of exactly the frame's size, so that the sanitizer sees any read past it.
        std::unique_ptr<unsigned char[]> copy(new unsigned char[frame.size() + (frame.empty() ? 1 : 0)]);
        std::copy(frame.begin(), frame.end(), copy.get());
        length = (int)frame.size();
        return procCarInfoMsg(copy.get(), length);
    }

    std::string text() const
    {
        std::string out;
        for (auto& v : values)
            out += (out.empty() ? "" : " ") + ("(" + std::to_string(v.item) + "," + std::to_string(v.value) + ")");
        return out;
    }

    std::vector<Value> values;
    int length = 0;

private:
    void onCarInfoValue(const Value& value) override
    {
        EXPECT_GE(value.offset, 0);
        EXPECT_GE(value.size, 1);
        EXPECT_LE(value.offset + value.size, length);
        values.push_back(value);
    }
};

struct Case
{
    const char* frame;
    const char* expected;
};

// Answer frames as the host controller sends them, with what the application must receive.
const Case kCases[] = {
    // Meter readings with the vehicle status block.
    {"00 12 05 12 34 56 78 09 0A 01 02 03 04 05 06 07 08 09 0A FF",
     "(0,5) (6,4660) (7,22136) (8,9) (9,10) (10,1) (11,2) (12,772) (13,1286) (14,1800) (15,2314) (16,1)"},
    // Compass.
    {"10 01 B4", "(0,180)"},
    {"11 01 5A", "(0,90)"},
    {"12 01 02", "(1,2)"},
    {"13 00", "(2,0)"},
    {"14 01 F6", "(3,246)"},
    {"15 00", "(4,0)"},
    // Air pressure and elevation.
    {"20 04 03 F2 01 2C", "(6,1010) (7,300)"},
    {"21 04 FF FF 00 00", "(6,65535) (7,0)"},
    {"22 00", "(5,0)"},
    {"23 02 03 F5", "(6,1013)"},
    {"24 02 00 64", "(7,100)"},
    {"25 02 80 01", "(7,32769)"},
    // Outside temperature.
    {"30 02 19 40", "(8,25) (9,64)"},
    {"31 02 FF 00", "(8,255) (9,0)"},
    // CAN data: the status block alone; only bit 0 of its last byte counts.
    {"40 0B 01 00 00 10 27 10 FF FF 00 00 FE", "(10,1) (11,0) (12,16) (13,10000) (14,65535) (15,0) (16,0)"},
    {"41 0B 02 03 01 00 00 01 80 00 12 34 03", "(10,2) (11,3) (12,256) (13,1) (14,32768) (15,4660) (16,1)"},
    {"42 00", "(17,0)"},
    {"43 00", "(18,0)"},
    {"44 00", "(19,0)"},
    // Wheel data: frame wheels 1 FL, 2 FR, 3 RR, 4 RL, 5 spare; items cross 3 and 4.
    {"61 04 03 00 1E 41", "(68,0) (29,16843009) (30,30) (31,65)"},
    {"60 04 01 15 22 33", "(65,0) (20,33686017) (21,34) (22,51)"},
    {"61 04 04 1B 05 06", "(67,0) (26,197121) (27,5) (28,6)"},
    {"61 04 05 0A 07 08", "(69,0) (32,50528513) (33,7) (34,8)"},
    {"60 04 01 20 1E 41", "(65,1)"},
    {"61 04 04 3F 00 00", "(67,1)"},
    {"6D 04 02 0F 1E 41", "(66,0) (23,258) (24,30) (25,65)"},
    {"61 04 00 00 1E 41", ""},
    {"61 04 06 00 1E 41", ""},
    // Wheel learning and selectors.
    {"62 01 01", "(35,0)"},
    {"62 01 05", "(39,0)"},
    {"62 01 00", ""},
    {"62 01 06", ""},
    {"63 01 01", "(40,0)"},
    {"63 01 05", "(44,0)"},
    {"64 01 01", "(45,0)"},
    {"64 01 05", "(49,0)"},
    {"65 01 00", "(50,0)"},
    {"66 01 01", "(51,0)"},
    {"66 01 05", "(55,0)"},
    {"67 01 00", "(56,0)"},
    {"68 01 00", ""},
    {"69 01 03", "(57,60)"},
    {"69 01 0A", ""},
    {"69 01 02", ""},
    {"6A 01 09", "(57,90)"},
    {"6A 01 05", "(57,70)"},
    {"6B 01 01", "(58,0)"},
    {"6B 01 02", "(59,0)"},
    {"6B 01 03", ""},
    {"6C 01 01", "(60,0)"},
    {"6C 01 04", "(63,0)"},
    {"6C 01 05", ""},
    {"90 01 01", "(64,0)"},
    {"90 01 02", ""},
    // Not answers of the car information.
    {"50 01 01", ""},
    {"FF 00", ""},
};

TEST(CarInfoDecoderTest, EveryAnswerGivesItsItemsAndValues)
{
    Collector decoder;
    for (const auto& c : kCases)
    {
        SCOPED_TRACE(c.frame);
        const auto result = decoder.decode(unhex(c.frame));
        EXPECT_EQ(decoder.text(), c.expected);
        EXPECT_FALSE(result.truncated);
        EXPECT_EQ(result.values, (int)decoder.values.size());
    }

    // Each value names the bytes it came from; fixed answers name the command byte.
    decoder.decode(unhex(kCases[0].frame));
    std::vector<int> offsets;
    for (auto& v : decoder.values)
        offsets.push_back(v.offset * 10 + v.size);
    EXPECT_EQ(offsets, (std::vector<int>{21, 32, 52, 71, 81, 91, 101, 112, 132, 152, 172, 191}));
    decoder.decode(unhex("42 00"));
    EXPECT_EQ(decoder.values.at(0).offset, 0);
}

TEST(CarInfoDecoderTest, ShortFramesDecodeTheirWholeFieldsAndLongOnesWhatTheCommandDefines)
{
    Collector decoder;
    // Cut inside a 16-bit field: the field and everything after it are left out.
    auto result = decoder.decode(unhex("00 12 05 12 34 56"));
    EXPECT_EQ(decoder.text(), "(0,5) (6,4660)");
    EXPECT_TRUE(result.truncated);
    decoder.decode(unhex("41 0B 01 02 03"));
    EXPECT_EQ(decoder.text(), "(10,1) (11,2)");
    decoder.decode(unhex("61 04 03 00 1E"));
    EXPECT_EQ(decoder.text(), "(68,0) (29,16843009) (30,30)");
    result = decoder.decode(unhex("62"));
    EXPECT_EQ(decoder.text(), "");
    EXPECT_TRUE(result.truncated);
    // A fixed answer needs no data at all; an empty frame is nothing.
    decoder.decode(unhex("13"));
    EXPECT_EQ(decoder.text(), "(2,0)");
    result = decoder.decode({});
    EXPECT_EQ(result.command, nullptr);
    EXPECT_EQ(decoder.text(), "");

    // Longer than defined (byte 1 is not examined): the rest is ignored.
    result = decoder.decode(unhex("31 01 19 40 AA BB CC"));
    EXPECT_EQ(decoder.text(), "(8,25) (9,64)");
    EXPECT_FALSE(result.truncated);
    decoder.decode(unhex("61 04 02 00 01 02 05 00 03 04"));
    EXPECT_EQ(decoder.text(), "(66,0) (23,16843009) (24,1) (25,2)");

    // Any cut of any answer gives a prefix of what the whole frame gives.
    for (const auto& c : kCases)
    {
        const auto frame = unhex(c.frame);
        decoder.decode(frame);
        const auto whole = decoder.values;
        for (size_t cut = 0; cut < frame.size(); ++cut)
        {
            SCOPED_TRACE(std::string(c.frame) + " cut at " + std::to_string(cut));
            decoder.decode(std::vector<unsigned char>(frame.begin(), frame.begin() + (long)cut));
            ASSERT_LE(decoder.values.size(), whole.size());
            for (size_t i = 0; i < decoder.values.size(); ++i)
                EXPECT_EQ(decoder.values[i].item * 100000 + decoder.values[i].value,
                          whole[i].item * 100000 + whole[i].value);
        }
    }
}

TEST(CarInfoDecoderTest, RandomFramesStayInsideTheirBytes)
{
    int count = 0;
    const auto* commands = CarInfoDecoder::commands(count);
    for (int i = 1; i < count; ++i)
        EXPECT_LT(commands[i - 1].code, commands[i].code);
    EXPECT_EQ(CarInfoDecoder::findCommand(0x6D)->first, NEED_CAL_TEST_MODE);

    Collector decoder;
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round)
    {
        std::vector<unsigned char> frame(random() % 40);
        for (auto& byte : frame)
            byte = (unsigned char)random();
        // Mostly known commands, so that their decoding is what is exercised.
        if (!frame.empty() && round % 4 != 0)
            frame[0] = (unsigned char)commands[random() % (unsigned)count].code;
        decoder.decode(frame);
        for (auto& v : decoder.values)
        {
            EXPECT_GE(v.item, 0);
            EXPECT_LE(v.item, 69);
        }
    }
    EXPECT_EQ(decoder.procCarInfoMsg(nullptr, 5).values, 0);
}
} // namespace
