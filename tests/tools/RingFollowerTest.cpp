// The monitor's ring follower against the real ring of a private bus, written from this
// process so that every step is deterministic.
#include "support/TestSupport.h"

#include "RingFollower.h"

#include <LmCom.h>

#include <cstring>

using namespace LmComTesting;
using LmComTool::RingFollower;
using Kind = RingFollower::Event::Kind;

namespace
{
/** What the follower reported, in order: "record 16+57 #0", "invalid 73 #1 ...",
    "missed 12 ...". */
struct Recorder
{
    std::vector<std::string> lines;
    std::vector<std::vector<unsigned char>> payloads;

    RingFollower::Sink sink()
    {
        return [this](const RingFollower::Event& event)
        {
            const std::string number = event.number ? "#" + std::to_string(*event.number) : "#?";
            if (event.kind == Kind::record)
            {
                lines.push_back("record " + std::to_string(event.offset) + "+" + std::to_string(event.length) + " "
                                + number + (event.endsAtRingEnd ? " at-end" : ""));
                payloads.emplace_back(event.payload, event.payload + event.length);
            }
            else if (event.kind == Kind::invalid)
                lines.push_back("invalid " + std::to_string(event.offset) + " " + number + " " + event.problem);
            else
                lines.push_back("missed " + (event.missed ? std::to_string(*event.missed) : "?") + " " + event.problem);
        };
    }
    std::vector<std::string> take()
    {
        auto taken = std::move(lines);
        lines.clear();
        return taken;
    }
};

class RingFollowerTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        ASSERT_TRUE(MsgSession::mapSharedArea());
        // Made now: the segment's name follows the test's bus.
        m_statistics = std::make_unique<Platform::BusStatistics>();
        ASSERT_TRUE(m_statistics->open());
    }

    static unsigned char* ring() { return const_cast<unsigned char*>(MsgSession::sharedAreaBase()); }

    // Writes a Bundle whose payload is exactly `payload` bytes; returns its offset.
    static int put(int payload)
    {
        auto bundle = Bundle::obtain();
        bundle->putByteArray("b", juce::MemoryBlock((size_t)(payload - 26), true));
        int size = 0;
        return MsgSession::putParcelable(Parcelable::Ptr(bundle.get()), size);
    }

    std::unique_ptr<Platform::BusStatistics> m_statistics;
    Recorder m_recorder;
};
} // namespace

TEST_F(RingFollowerTest, ReportsEachRecordOnceAcrossTheEndOfALap)
{
    put(100); // before the start: never reported
    RingFollower follower(MsgSession::sharedAreaBase(), m_statistics.get());
    follower.start();
    EXPECT_EQ(follower.cursor(), 16 + 108);
    EXPECT_EQ(follower.poll(m_recorder.sink()), 0);

    auto message = RemoteMessage::obtain();
    message->code = 1184;
    int size = 0;
    EXPECT_EQ(MsgSession::putParcelable(Parcelable::Ptr(message.get()), size), 124);
    put(40);
    EXPECT_EQ(follower.poll(m_recorder.sink()), 2);
    EXPECT_EQ(m_recorder.take(), (std::vector<std::string>{"record 124+20 #1", "record 152+40 #2"}));
    auto parcel = Parcel::obtain();
    parcel->fillData(m_recorder.payloads[0].data(), 20);
    auto rebuilt = createFromParcel(parcel.get());
    ASSERT_NE(dynamic_cast<RemoteMessage*>(rebuilt.get()), nullptr);
    EXPECT_EQ(dynamic_cast<RemoteMessage*>(rebuilt.get())->code, 1184);
    EXPECT_EQ(follower.poll(m_recorder.sink()), 0); // nothing twice

    // The lap ends with a record that fills the ring to its very end; the next lap starts
    // before the follower looks again. It finishes the old lap, then reads the new one.
    std::vector<std::string> expected;
    for (int number = 3; number <= 6; ++number)
        expected.push_back("record " + std::to_string(put(60000)) + "+60000 #" + std::to_string(number));
    const int last = MsgSession::kRingSize - 8 - 184;
    EXPECT_EQ(put(last - 240232 - 8), 240232);
    expected.push_back("record 240232+" + std::to_string(last - 240232 - 8) + " #7");
    EXPECT_EQ(put(184), last);
    expected.push_back("record " + std::to_string(last) + "+184 #8 at-end");
    EXPECT_EQ(put(30), 16);
    EXPECT_EQ(put(30), 54);
    expected.insert(expected.end(), {"record 16+30 #9", "record 54+30 #10"});
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(), expected);
    EXPECT_EQ(follower.lap(), 1u);
    EXPECT_EQ(follower.recordsSeen(), 10u);
    EXPECT_EQ(follower.missedCounted(), 0u);
}

TEST_F(RingFollowerTest, CountsWhatItMissedWhenTheWritersCameRoundPastIt)
{
    RingFollower follower(MsgSession::sharedAreaBase(), m_statistics.get());
    follower.start();
    put(50);
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(), std::vector<std::string>{"record 16+50 #0"});

    // More than a lap between two looks (four records of 60000 bytes fill one): records 1 to 8
    // are gone, 9 and 10 are there.
    for (int i = 0; i < 8; ++i)
        put(60000);
    EXPECT_EQ(put(60000), 16); // record 9 starts lap 2
    put(70);
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(),
              (std::vector<std::string>{"missed 8 fell a lap behind the writers; resuming at the start of lap 2",
                                        "record 16+60000 #9", "record 60024+70 #10"}));
    EXPECT_EQ(follower.missedCounted(), 8u);
    EXPECT_EQ(follower.cursor(), 60102);

    // Within one lap: the writers went back to the start and passed the cursor.
    for (int i = 0; i < 3; ++i)
        put(60000);            // 11 to 13
    EXPECT_EQ(put(60000), 16); // 14, lap 3
    put(60000);                // 15 passes the cursor
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(),
              (std::vector<std::string>{"missed 3 fell a lap behind the writers; resuming at the start of lap 3",
                                        "record 16+60000 #14", "record 60024+60000 #15"}));
    EXPECT_EQ(follower.missedCounted(), 11u);
}

TEST_F(RingFollowerTest, RecordsThatFailValidationAreReportedNotSkipped)
{
    RingFollower follower(MsgSession::sharedAreaBase(), m_statistics.get());
    follower.start();

    // A payload byte changed after the record was written.
    const int damaged = put(40);
    ring()[damaged + 6 + 20] ^= 0x01;
    // A payload over 65535 bytes keeps only its low 16 bits in the length field.
    const int oversize = put(70000);
    const int after = put(30);
    follower.poll(m_recorder.sink());
    auto lines = m_recorder.take();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].substr(0, 25), "invalid 16 #0 checksum 0x");
    EXPECT_NE(lines[0].find(", but the payload sums to 0x"), std::string::npos);
    EXPECT_EQ(lines[1],
              "invalid " + std::to_string(oversize) + " #1 a payload of 70000 bytes, over 65535: no receiver takes it");
    EXPECT_EQ(lines[2], "record " + std::to_string(after) + "+30 #2");

    // Where no record starts, the rest up to the writers is skipped and the numbers are
    // unknown until the next lap tells them; the records skipped are then counted.
    const int smashed = put(100);
    put(100);
    std::memset(ring() + smashed, 0, 4);
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(),
              std::vector<std::string>{"invalid " + std::to_string(smashed)
                                       + " #? no record here: 216 bytes skipped up to the writers' position"});
    const int next = put(100);
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(), std::vector<std::string>{"record " + std::to_string(next) + "+100 #?"});
    for (int i = 0; i < 3; ++i)
        put(60000); // the rest of the lap
    EXPECT_EQ(put(12000), 16);
    follower.poll(m_recorder.sink());
    lines = m_recorder.take();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[2], "record 190450+60000 #?");
    EXPECT_EQ(lines[3], "missed 2 unreadable bytes were skipped");
    EXPECT_EQ(lines[4], "record 16+12000 #9");
    EXPECT_EQ(follower.invalidSeen(), 3u);

    // A damaged header never makes it read outside the ring.
    const std::int32_t saved = *reinterpret_cast<std::int32_t*>(ring() + 8);
    for (std::int32_t hostile : {0x7FFFFFFF, -1, 0, 15, MsgSession::kRingSize + 1})
    {
        std::memcpy(ring() + 8, &hostile, 4);
        EXPECT_EQ(follower.poll(m_recorder.sink()), 0);
    }
    std::memcpy(ring() + 8, &saved, 4);
    EXPECT_EQ(follower.poll(m_recorder.sink()), 0);
}

TEST_F(RingFollowerTest, WithoutStatisticsLapsCannotBeCounted)
{
    for (int i = 0; i < 3; ++i)
        put(60000);
    RingFollower follower(MsgSession::sharedAreaBase(), nullptr);
    follower.start();
    EXPECT_EQ(put(80), 180040);
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(), std::vector<std::string>{"record 180040+80 #?"});
    put(60000);
    EXPECT_EQ(put(60000), 16);
    follower.poll(m_recorder.sink());
    EXPECT_EQ(m_recorder.take(),
              (std::vector<std::string>{
                  "missed ? the writers went round the ring; without bus statistics laps are not counted",
                  "record 16+60000 #?"}));
    EXPECT_EQ(follower.missedUncounted(), 1u);
}
