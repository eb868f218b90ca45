// The bus's statistics segment: what writers count, and that messaging never depends on it.
#include "support/TestSupport.h"

#include "Platform/BusStatistics.h"

#include <LmCom.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace LmComTesting;

namespace
{
class BusStatisticsTest : public LmComTest
{
};

// A Bundle whose flattened form is exactly `payload` bytes (one byte array under "b").
Parcelable::Ptr bundleOfSize(int payload)
{
    auto bundle = Bundle::obtain();
    bundle->putByteArray("b", juce::MemoryBlock((size_t)(payload - 26), true));
    return Parcelable::Ptr(bundle.get());
}

int put(int payload)
{
    int size = 0;
    return MsgSession::putParcelable(bundleOfSize(payload), size);
}

bool shmExists(const juce::String& systemName)
{
    return juce::File("/dev/shm" + systemName).exists();
}
} // namespace

TEST_F(BusStatisticsTest, WritersCountRecordsLapsAndRefusals)
{
    Platform::BusStatistics reader;
    EXPECT_FALSE(reader.open()); // a reader never makes the segment
    EXPECT_FALSE(shmExists(Platform::BusStatistics::systemName()));

    ASSERT_TRUE(MsgSession::mapSharedArea());
    ASSERT_TRUE(reader.open());
    auto counters = reader.read();
    EXPECT_EQ(counters.recordsReserved, 0u);
    EXPECT_EQ(counters.laps, 0u);
    EXPECT_TRUE(counters.lapSettled);

    // Three records of 100 000 bytes do not fit one lap: the third starts the next one.
    EXPECT_EQ(put(100000), 16);
    EXPECT_EQ(put(100000), 16 + 100008);
    counters = reader.read();
    EXPECT_EQ(counters.recordsReserved, 2u);
    EXPECT_EQ(counters.recordsWritten, 2u);
    EXPECT_EQ(counters.laps, 0u);
    EXPECT_EQ(put(100000), 16);
    EXPECT_EQ(put(50), 16 + 100008);
    counters = reader.read();
    EXPECT_EQ(counters.recordsReserved, 4u);
    EXPECT_EQ(counters.recordsWritten, 4u);
    EXPECT_EQ(counters.laps, 1u);
    EXPECT_EQ(counters.lastLapEnd, 16 + 2 * 100008);
    EXPECT_EQ(counters.lapFirstRecord, 2u); // records are numbered from 0
    EXPECT_EQ(reader.laps(), 1u);

    // A record that ends exactly at the ring's end does not start a lap; the next one does.
    const int rest = MsgSession::kRingSize - (16 + 100008 + 58) - 8;
    EXPECT_EQ(put(rest), 16 + 100008 + 58);
    EXPECT_EQ(put(30), 16);
    counters = reader.read();
    EXPECT_EQ(counters.laps, 2u);
    EXPECT_EQ(counters.lastLapEnd, MsgSession::kRingSize);
    EXPECT_EQ(counters.lapFirstRecord, 5u);
    EXPECT_EQ(counters.refusedPosts, 0u);

    // Refused: too large for the ring, and a post or send to nobody.
    EXPECT_EQ(put(MsgSession::kMaxPayload + 1), -1);
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppUnknown, getDestName);
    EXPECT_FALSE(IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, 1, 0, 0, nullptr));
    EXPECT_FALSE(IPCMsg::MessageHelper::sendMessage(Pubhead::eAppType::AppRadio, 1, 0, 0, nullptr));
    counters = reader.read();
    EXPECT_EQ(counters.refusedPosts, 3u);
    EXPECT_EQ(counters.recordsReserved, 6u); // refusals reserve nothing
    EXPECT_EQ(counters.recordsWritten, 6u);

    // Only this user can see the counters.
    struct stat info = {};
    ASSERT_EQ(stat(("/dev/shm" + Platform::BusStatistics::systemName()).toRawUTF8(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
}

TEST_F(BusStatisticsTest, MessagingWorksWhenTheSegmentCannotBeUsed)
{
    // Something that is not a statistics segment holds the name (too small to be one).
    const auto name = Platform::BusStatistics::systemName();
    const int fd = shm_open(name.toRawUTF8(), O_RDWR | O_CREAT | O_EXCL, 0600);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(ftruncate(fd, 8), 0);
    close(fd);

    ASSERT_TRUE(MsgSession::mapSharedArea());
    int size = 0;
    const int offset = MsgSession::putParcelable(Parcelable::Ptr(Bundle::obtain().get()), size);
    EXPECT_EQ(offset, 16);
    EXPECT_NE(MsgSession::getParcelable(offset, size), nullptr);
    EXPECT_EQ(put(MsgSession::kMaxPayload + 1), -1);

    Platform::BusStatistics reader;
    EXPECT_FALSE(reader.open());
    EXPECT_FALSE(reader.lastError().isEmpty());
    EXPECT_EQ(reader.read().recordsReserved, 0u); // an unopened reader reads zeros, never crashes
}
