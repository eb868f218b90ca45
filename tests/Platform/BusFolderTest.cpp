// A bus folder that is not this user's own (wrong mode, another owner, a link to another
// folder, files planted in it) is never used, and the error says why.
#include "support/Command.h"
#include "support/MessageLoop.h"
#include "support/TestSupport.h"

#include "Platform/BusFolder.h"
#include "Platform/Endpoint.h"

#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <thread>

using namespace LmComTesting;
using Platform::Endpoint;

namespace
{
using BusFolderTest = LmComTest;

std::unique_ptr<Endpoint> openEndpoint(const juce::String& name, juce::String& error)
{
    Endpoint::OpenResult result;
    return Endpoint::open(
        name, [](juce::int64, const Platform::WindowMessage&) {}, result, error);
}

// What every lookup of the current bus answers for a name.
void expectUnreachable(const juce::String& name)
{
    EXPECT_FALSE(Endpoint::exists(name));
    EXPECT_FALSE(Endpoint::isAlive(name));
    EXPECT_FALSE(Endpoint::post(name, {1, 2, 3, 0}));
    bool sent = true; // from another thread: the message thread would call its own endpoint
    std::thread([&] { sent = Endpoint::send(name, {1, 2, 3, 0}); }).join();
    EXPECT_FALSE(sent);
    EXPECT_TRUE(Endpoint::list().empty());
}
} // namespace

TEST_F(BusFolderTest, AFolderOfAnotherModeOwnerOrALinkIsRefusedEverywhere)
{
    MessageLoop loop;
    juce::String folder, error;
    ASSERT_TRUE(Platform::BusFolder::prepare(folder, error)) << error;
    auto radio = openEndpoint("Radio", error);
    ASSERT_NE(radio, nullptr) << error;
    const auto bus = folder.dropLastCharacters(1);

    // Another bus whose folder is a link to this one: its endpoints are not reachable through it.
    ASSERT_EQ(setenv("LMCOM_BUS", (m_bus + "-link").toRawUTF8(), 1), 0);
    const auto link = Platform::BusFolder::path().dropLastCharacters(1);
    ASSERT_EQ(symlink(bus.toRawUTF8(), link.toRawUTF8()), 0);
    expectUnreachable("Radio");
    EXPECT_FALSE(Platform::BusFolder::check(error));
    EXPECT_TRUE(error.contains("a symbolic link owned by uid")) << error;
    EXPECT_EQ(openEndpoint("Radio", error), nullptr);
#ifdef LMCOM_TOOL
    const auto listed = Command::run(LMCOM_TOOL, {"list"}, 5000);
    EXPECT_EQ(listed.status, 1);
    ASSERT_EQ(listed.err.size(), 1u);
    EXPECT_NE(listed.err[0].find("remove it, or use another bus"), std::string::npos) << listed.err[0];
#endif
    unlink(link.toRawUTF8());

    // The bus's own folder with a wider mode, then with another owner.
    ASSERT_EQ(setenv("LMCOM_BUS", m_bus.toRawUTF8(), 1), 0);
    ASSERT_TRUE(Endpoint::exists("Radio"));
    ASSERT_EQ(chmod(bus.toRawUTF8(), 0755), 0);
    EXPECT_FALSE(Endpoint::isAlive("Radio"));
    EXPECT_FALSE(Platform::BusFolder::check(error));
    EXPECT_TRUE(error.contains("a folder with mode 0755")) << error;
    EXPECT_EQ(openEndpoint("USB", error), nullptr);
    ASSERT_EQ(chmod(bus.toRawUTF8(), 0700), 0);
    if (geteuid() == 0)
    {
        ASSERT_EQ(chown(bus.toRawUTF8(), 4242, 4242), 0);
        EXPECT_FALSE(Endpoint::isAlive("Radio"));
        EXPECT_FALSE(Platform::BusFolder::check(error));
        EXPECT_TRUE(error.contains("owned by uid 4242")) << error;
        ASSERT_EQ(chown(bus.toRawUTF8(), geteuid(), getegid()), 0);
    }
    EXPECT_TRUE(Endpoint::isAlive("Radio"));
}

TEST_F(BusFolderTest, PlantedLockFilesNeverBlockOrCount)
{
    MessageLoop loop;
    juce::String folder, error;
    ASSERT_TRUE(Platform::BusFolder::prepare(folder, error)) << error;
    // A socket file with a FIFO as its lock file, and a lock file that links elsewhere.
    const auto fifoStem = folder + "Radio";
    ASSERT_EQ(mkfifo((fifoStem + ".lock").toRawUTF8(), 0600), 0);
    const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, (fifoStem + ".sock").toRawUTF8());
    ASSERT_EQ(bind(fd, (const sockaddr*)&address, sizeof address), 0);
    close(fd);
    const auto target = m_root.getChildFile("target");
    ASSERT_TRUE(target.create().wasOk());
    ASSERT_EQ(symlink(target.getFullPathName().toRawUTF8(), (folder + "USB.lock").toRawUTF8()), 0);

    std::vector<Endpoint::Listing> listing;
    ASSERT_TRUE(finishesWithin(5000, [&] { listing = Endpoint::list(); }));
    ASSERT_EQ(listing.size(), 1u);
    EXPECT_FALSE(listing[0].alive);
    EXPECT_EQ(openEndpoint("Radio", error), nullptr);
    EXPECT_TRUE(error.contains("must be a regular file")) << error;
    EXPECT_EQ(openEndpoint("USB", error), nullptr);
    EXPECT_EQ(target.getSize(), 0);
}
