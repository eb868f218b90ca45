// "lmcom clean" on a bus that a live process holds, and on the same bus once it died.
#include "support/ChildProcess.h"
#include "support/Command.h"
#include "support/TestSupport.h"

#include "Platform/BusFolder.h"
#include "Platform/BusStatistics.h"
#include "Platform/SharedMemory.h"

#include <signal.h>
#include <sys/mman.h>

#include <filesystem>

using namespace LmComTesting;

namespace
{
class CleanCommandTest : public LmComTest
{
protected:
    static bool segmentExists(const juce::String& systemName)
    {
        return std::filesystem::exists("/dev/shm" + systemName.toStdString());
    }
    bool busLeft() const
    {
        return segmentExists(Platform::SharedMemory::systemNameFor("LmIPCMsgShareMem"))
               || segmentExists(Platform::BusStatistics::systemName())
               || std::filesystem::exists(Platform::BusFolder::path().toStdString());
    }
};
} // namespace

TEST_F(CleanCommandTest, RemovesADeadBusAndRefusesALiveOne)
{
    const std::string bus = "'" + m_bus.toStdString() + "'";
    ChildProcess radio("peer", {"5", "die"});
    ChildProcess bluetooth("peer", {"13", "die"});
    ASSERT_TRUE(radio.waitForLine("READY"));
    ASSERT_TRUE(bluetooth.waitForLine("READY"));
    // A post makes the statistics segment beside the ring.
    ASSERT_EQ(Command::run(LMCOM_TOOL, {"post", "Radio", "1"}).status, 0);
    bluetooth.kill(SIGKILL);
    ASSERT_EQ(bluetooth.waitForExit(), 128 + SIGKILL);

    auto refused = Command::run(LMCOM_TOOL, {"clean"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err,
              std::vector<std::string>{"lmcom clean: bus " + bus + " is in use (live: Radio); nothing removed"});
    EXPECT_TRUE(segmentExists(Platform::SharedMemory::systemNameFor("LmIPCMsgShareMem")));
    EXPECT_TRUE(std::filesystem::exists(Platform::BusFolder::path().toStdString() + "Radio.sock"));

    radio.kill(SIGKILL);
    ASSERT_EQ(radio.waitForExit(), 128 + SIGKILL);
    // Another bus is not touched.
    auto other = Command::run(LMCOM_TOOL, {"clean", "--bus", m_bus.toStdString() + "x"});
    EXPECT_EQ(other.status, 0);
    EXPECT_EQ(other.out,
              std::vector<std::string>{"lmcom clean: bus '" + m_bus.toStdString() + "x': nothing to remove"});
    EXPECT_TRUE(busLeft());

    auto cleaned = Command::run(LMCOM_TOOL, {"clean"});
    EXPECT_EQ(cleaned.status, 0);
    EXPECT_EQ(cleaned.out, std::vector<std::string>{"lmcom clean: bus " + bus
                                                    + ": removed message ring, statistics, endpoint folder (2 dead "
                                                      "endpoints)"});
    EXPECT_FALSE(busLeft());
    EXPECT_EQ(Command::run(LMCOM_TOOL, {"clean"}).out,
              std::vector<std::string>{"lmcom clean: bus " + bus + ": nothing to remove"});
    EXPECT_EQ(Command::run(LMCOM_TOOL, {"clean", "extra"}).status, 2);
}
