// Messaging between real processes on a private bus.
#include "support/ChildProcess.h"
#include "support/Peer.h"
#include "support/TestSupport.h"

#include "Platform/BusFolder.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <random>

using namespace LmComTesting;
using IPCMsg::MessageHelper;

namespace
{
constexpr int kMain = Pubhead::eAppType::AppMain;
constexpr int kMainMenu = Pubhead::eAppType::AppMainMenu;
constexpr int kRadio = Pubhead::eAppType::AppRadio;
constexpr int kCarInfo = Pubhead::eAppType::AppCarInfo;

/** The test process plays the radio application. */
class MsgSessionTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        loop = std::make_unique<MessageLoop>();
        MessageHelper::config(kRadio, getDestName);
    }

    void TearDown() override
    {
        MsgSession::purgeAll();
        loop = nullptr;
        LmComTest::TearDown();
    }

    void initRadio()
    {
        session = std::make_unique<MsgSession>();
        ASSERT_TRUE(session->init(&proc));
    }

    juce::String handledCodes() const { return m_root.getChildFile("handled.txt").loadFileAsString(); }

    std::unique_ptr<MessageLoop> loop;
    RecordingProc proc;
    std::unique_ptr<MsgSession> session;
};

Bundle::Ptr textBundle(const juce::String& text)
{
    auto bundle = Bundle::obtain();
    bundle->putString("text", text);
    return bundle;
}
} // namespace

TEST_F(MsgSessionTest, PostsAndSendsBetweenProcesses)
{
    initRadio();
    ChildProcess main("peer", {"0", "echo"});
    ASSERT_TRUE(main.waitForLine("READY"));

    // A posts to B with a Bundle; B answers to A: both see the other's stamp.
    EXPECT_TRUE(MessageHelper::postMessage(kMain, 1000, 1, 2, textBundle("hello").get()));
    ASSERT_TRUE(loop->runUntil([&] { return proc.count(1001) == 1; }));
    EXPECT_TRUE(main.waitForLine("OWN 1000 1 2 5 hello"));
    auto& answer = proc.seen.back();
    EXPECT_EQ(answer.sender, kMain);
    EXPECT_EQ(answer.param1, 1);
    EXPECT_EQ(answer.param2, 2);
    ASSERT_NE(answer.bundle, nullptr);
    EXPECT_EQ(answer.bundle->getString("text", {}), "hello");

    // sendMessage returns only after the destination's handler ran.
    for (int i = 0; i < 20; ++i)
    {
        EXPECT_TRUE(MessageHelper::sendMessage(kMain, 2000 + i, 3, 4, nullptr));
        EXPECT_TRUE(handledCodes().contains(juce::String(2000 + i))) << i;
    }

    // A send to this process's own endpoint from the message thread is served at once.
    const auto before = proc.seen.size();
    EXPECT_TRUE(MessageHelper::sendMessage(kRadio, 77, 0, 0, nullptr));
    ASSERT_EQ(proc.seen.size(), before + 1);
    EXPECT_EQ(proc.seen.back().code, 77);
    EXPECT_EQ(proc.seen.back().sender, kRadio);

    // A message is only ever answered once: 20 sends gave 20 echoes.
    EXPECT_TRUE(loop->runUntil([&] { return proc.count(2020) == 1; }));
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(proc.count(2001 + i), 1);

    MessageHelper::postMessage(kMain, 9999, 0, 0, nullptr);
    EXPECT_EQ(main.waitForExit(), 0);
}

TEST_F(MsgSessionTest, SendsEachWayAtOnceDoNotDeadlock)
{
    initRadio();
    // The destination answers our send with a send of its own before it returns.
    ChildProcess main("peer", {"0", "sendback"});
    ASSERT_TRUE(main.waitForLine("READY"));
    EXPECT_TRUE(MessageHelper::sendMessage(kMain, 100, 0, 0, nullptr));
    EXPECT_EQ(proc.count(200), 1); // served while we waited
    EXPECT_TRUE(main.waitForLine("SENT_BACK"));

    // Two other processes send to each other at the same moment.
    ChildProcess a("peer", {"1", "cross", "20"});
    ChildProcess b("peer", {"20", "cross", "1"});
    ASSERT_TRUE(a.waitForLine("READY"));
    ASSERT_TRUE(b.waitForLine("READY"));
    MessageHelper::postMessage(kMainMenu, 300, 0, 0, nullptr);
    MessageHelper::postMessage(kCarInfo, 300, 0, 0, nullptr);
    EXPECT_TRUE(a.waitForLine("CROSS_DONE"));
    EXPECT_TRUE(b.waitForLine("CROSS_DONE"));
    EXPECT_TRUE(a.waitForLine("OWN 301 0 0 20"));
    EXPECT_TRUE(b.waitForLine("OWN 301 0 0 1"));
    for (int type : {kMain, kMainMenu, kCarInfo})
        MessageHelper::postMessage(type, 9999, 0, 0, nullptr);
    EXPECT_EQ(a.waitForExit(), 0);
    EXPECT_EQ(b.waitForExit(), 0);
}

TEST_F(MsgSessionTest, DestinationThatDiesEndsTheWaitAndItsNameCanBeTakenAgain)
{
    initRadio();
    {
        ChildProcess doomed("peer", {"0", "die"});
        ASSERT_TRUE(doomed.waitForLine("READY"));
        EXPECT_TRUE(MessageHelper::sendMessage(kMain, 66, 0, 0, nullptr)); // it exits in its handler
        EXPECT_EQ(doomed.waitForExit(), 0);
    }
    {
        ChildProcess crashed("peer", {"0", "echo"});
        ASSERT_TRUE(crashed.waitForLine("READY"));
        crashed.kill(SIGKILL);
        EXPECT_EQ(crashed.waitForExit(), 128 + SIGKILL);
    }
    // A dead process's endpoint is reclaimed; a live one's is not.
    ChildProcess restarted("peer", {"0", "echo"});
    ASSERT_TRUE(restarted.waitForLine("READY"));
    ChildProcess twin("peer", {"0", "echo"});
    EXPECT_EQ(twin.waitForExit(), 3);
    EXPECT_TRUE(twin.waitForLine("INIT_FAILED"));

    EXPECT_TRUE(MessageHelper::postMessage(kMain, 5, 0, 0, nullptr));
    EXPECT_TRUE(loop->runUntil([&] { return proc.count(6) == 1; }));
    MessageHelper::postMessage(kMain, 9999, 0, 0, nullptr);
    EXPECT_EQ(restarted.waitForExit(), 0);

    // This process posted to that name before: it can still take the name itself now.
    MsgSession::purgeAll();
    MessageHelper::config(kMain, getDestName);
    MsgSession asMain;
    EXPECT_TRUE(asMain.init(&proc));
}

TEST_F(MsgSessionTest, TwoProcessesFloodingEachOtherBothFinish)
{
    initRadio();
    constexpr int kCount = 3000;
    ChildProcess other("flood", {"0", "5", std::to_string(kCount)});
    ASSERT_TRUE(other.waitForLine("READY"));

    // Both post flat out from their message threads at the same time; neither blocks for
    // good, and everything posted arrives, in order.
    int posted = 0;
    for (int i = 0; i < kCount; ++i)
        posted += MessageHelper::postMessage(kMain, 800, i, 0, nullptr) ? 1 : 0;
    // Keep serving meanwhile: a process that stops reading makes its peer's posts fail.
    ASSERT_TRUE(loop->runUntil([&] { return other.waitForLine("POSTED", 0); }, 30000));
    auto valueOf = [&other](const std::string& prefix)
    {
        for (auto& line : other.lines())
            if (line.rfind(prefix, 0) == 0)
                return std::stoi(line.substr(prefix.size()));
        return -1;
    };
    const int otherPosted = valueOf("POSTED ");
    ASSERT_TRUE(loop->runUntil([&] { return proc.count(800) == otherPosted; }, 30000));
    MessageHelper::postMessage(kMain, 9999, 0, 0, nullptr);
    ASSERT_TRUE(other.waitForLine("RECEIVED", 30000));
    EXPECT_EQ(valueOf("RECEIVED "), posted);
    EXPECT_EQ(other.waitForExit(), 0);

    EXPECT_EQ(posted, kCount);
    EXPECT_EQ(otherPosted, kCount);
    int expected = 0;
    for (auto& seen : proc.seen)
    {
        if (seen.own && seen.code == 800)
        {
            EXPECT_EQ(seen.param1, expected++);
        }
    }
}

TEST_F(MsgSessionTest, BroadcastsReachEveryProcessButNavigation)
{
    writeSystemFile("/NandFlash/Application/Bin/QN_MAIN.ini", "[NAVIGATION]\nTITLE=Navi Map\n");
    initRadio();
    struct OwnReceiver : BroadcastReceiver
    {
        void onReceive(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle) override
        {
            got.add(action + ":" + (bundle != nullptr ? bundle->getString("text", "-") : "null"));
        }
        juce::StringArray got;
    } own;
    own.addAction("news");
    MessageHelper::registerReceiver(own);

    ChildProcess main("peer", {"0", "echo"});
    ChildProcess navi("peer", {"15", "echo"});
    ChildProcess carInfo("peer", {"20", "echo"});
    for (auto* child : {&main, &navi, &carInfo})
        ASSERT_TRUE(child->waitForLine("READY"));

    EXPECT_TRUE(MessageHelper::sendBroadcast("news", textBundle("hi")));
    EXPECT_TRUE(MessageHelper::sendBroadcast("other", textBundle("no")));
    EXPECT_TRUE(main.waitForLine("BROADCAST news hi"));
    EXPECT_TRUE(carInfo.waitForLine("BROADCAST news hi"));
    EXPECT_TRUE(loop->runUntil([&] { return own.got.size() == 1; })); // the sender's own receivers too
    EXPECT_EQ(own.got[0], "news:hi");

    // broadcastMessage skips the sender and navigation.
    EXPECT_TRUE(MessageHelper::broadcastMessage(700, 1, 2, nullptr));
    EXPECT_TRUE(main.waitForLine("OWN 700 1 2 5"));
    EXPECT_TRUE(carInfo.waitForLine("OWN 700 1 2 5"));

    // Navigation's endpoint was never posted to: its quit message is the first thing it sees.
    MessageHelper::postMessage(Pubhead::eAppType::AppNavi, 9999, 0, 0, nullptr);
    EXPECT_EQ(navi.waitForExit(), 0);
    for (auto& line : navi.lines())
        EXPECT_TRUE(line == "READY" || line == "BYE" || line.rfind("OWN 9999", 0) == 0) << line;
    loop->runFor(50);
    EXPECT_EQ(proc.count(700), 0);
    EXPECT_EQ(own.got.size(), 1);
    for (int type : {kMain, kCarInfo})
        MessageHelper::postMessage(type, 9999, 0, 0, nullptr);
}

TEST_F(MsgSessionTest, ConcurrentWritersNeverDeliverATornRecord)
{
    initRadio();
    constexpr int kWriters = 3, kCount = 400, kBytes = 3000;
    std::vector<std::unique_ptr<ChildProcess>> writers;
    for (int w = 0; w < kWriters; ++w)
        writers.push_back(std::make_unique<ChildProcess>(
            "writer", std::vector<std::string>{std::to_string(21 + w), "5", std::to_string(kCount),
                                               std::to_string(kBytes), std::to_string(w)}));
    // A fourth writer is killed in the middle of its burst.
    ChildProcess victim("writer", {"24", "5", "100000", std::to_string(kBytes), "9"});

    int delivered = 0;
    auto allDone = [&]
    {
        for (auto& w : writers)
            if (!w->waitForLine("DONE", 0))
                return false;
        return true;
    };
    ASSERT_TRUE(loop->runUntil(
        [&]
        {
            if (!victim.lines().empty() || victim.waitForLine("READY", 0))
            {
                int fromVictim = 0;
                for (auto& s : proc.seen)
                    fromVictim += s.own && s.param1 == 9 ? 1 : 0;
                if (fromVictim > 50)
                    victim.kill(SIGKILL);
            }
            return allDone();
        },
        60000));
    EXPECT_EQ(victim.waitForExit(), 128 + SIGKILL);
    for (auto& w : writers)
    {
        for (auto& line : w->lines())
            if (line.rfind("DONE ", 0) == 0)
                delivered += std::stoi(line.substr(5));
        EXPECT_EQ(w->waitForExit(), 0);
    }

    // Every datagram that reached the queue is handled, as a message or as unknown.
    auto handledFromWriters = [&]
    {
        int n = 0;
        for (auto& s : proc.seen)
            n += (s.own && s.param1 >= 0 && s.param1 < kWriters) || !s.own ? 1 : 0;
        return n;
    };
    loop->runUntil([&] { return handledFromWriters() >= delivered; }, 20000);

    int intact = 0, unknown = 0;
    for (auto& s : proc.seen)
    {
        if (!s.own)
        {
            ++unknown;
            EXPECT_EQ(s.code, MsgSession::kMsgWindowMessage);
            continue;
        }
        auto rebuilt = RemoteMessage::obtain();
        rebuilt->code = s.code;
        rebuilt->param1 = s.param1;
        rebuilt->param2 = s.param2;
        rebuilt->object = s.bundle.get();
        EXPECT_TRUE(isIntactStamped(*rebuilt)) << "writer " << s.param1 << " seq " << s.param2;
        intact += s.param1 < kWriters ? 1 : 0;
    }
    EXPECT_GT(intact, 0);
    EXPECT_GE(intact + unknown, delivered);
    std::printf("delivered %d, intact %d, unknown %d\n", delivered, intact, unknown);
}

TEST_F(MsgSessionTest, RecordOverwrittenAfterALapArrivesAsUnknown)
{
    // A fresh ring: records of one size sit at 16 + k * size, lap after lap.
    ChildProcess main("peer", {"0", "slowfirst", "1500"});
    ASSERT_TRUE(main.waitForLine("READY"));
    ASSERT_TRUE(MsgSession::mapSharedArea());

    std::vector<int> posted; // seqs whose datagram reached the queue, in order
    for (int seq = 1; seq <= 14; ++seq)
        if (MessageHelper::postMessage(kMain, makeStamped(0, seq, 40000)))
            posted.push_back(seq);
    ASSERT_GE(posted.size(), 8u);

    // Its queue may still be full: keep knocking until the quit message gets in.
    while (!MessageHelper::postMessage(kMain, 9999, 0, 0, nullptr))
        ASSERT_FALSE(main.waitForExit(0).has_value());
    EXPECT_EQ(main.waitForExit(20000), 0);

    // The i-th message handled is the i-th datagram queued: a message taken from the ring
    // must be the one its datagram announced.
    size_t index = 0;
    int unknown = 0;
    for (auto& line : main.lines())
    {
        if (line.rfind("OWN 5000", 0) == 0 || line.rfind("UNKNOWN", 0) == 0)
        {
            ASSERT_LT(index, posted.size());
            if (line.rfind("OWN", 0) == 0)
            {
                EXPECT_EQ(line, "OWN 5000 0 " + std::to_string(posted[index]) + " 5 intact");
            }
            else
                ++unknown;
            ++index;
        }
    }
    EXPECT_EQ(index, posted.size());
    EXPECT_GE(unknown, 1); // the second message's record was overwritten a lap later
}

TEST_F(MsgSessionTest, HostileRingAndDatagramsNeverCrashTheReceiver)
{
    initRadio();
    ChildProcess main("peer", {"0", "echo"});
    ASSERT_TRUE(main.waitForLine("READY"));

    // Raw datagrams of every wrong shape straight into its endpoint.
    const auto path = Platform::BusFolder::path() + Platform::BusFolder::encodeName("NavigRecive") + ".sock";
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.toRawUTF8(), sizeof address.sun_path - 1);
    const int raw = socket(AF_UNIX, SOCK_DGRAM, 0);
    ASSERT_GE(raw, 0);
    std::mt19937 random(7);
    auto sendRaw = [&](const void* data, size_t size)
    {
        sendto(raw, data, size, MSG_DONTWAIT, (const sockaddr*)&address, sizeof address);
        usleep(200); // the queue holds ten
    };
    for (int i = 0; i < 300; ++i)
    {
        unsigned char junk[64];
        for (auto& byte : junk)
            byte = (unsigned char)random();
        sendRaw(junk, random() % sizeof junk);
    }
    const int offsets[] = {-1, 0, 15, 16, 262143, 262144, 0x7FFFFFFF, (int)0x80000000};
    const int lengths[] = {-1, 0, 1, 65535, 65536, 262120, 0x7FFFFFFF, (int)0x80000000};
    for (int offset : offsets)
        for (int length : lengths)
            for (juce::uint32 kind : {0x4C4D0001u, 0x4C4D0002u, 0x4C4D0003u})
                for (int msg : {32778, 32779, 74, 1024, 5})
                {
                    const juce::uint32 datagram[6] = {
                        kind, (juce::uint32)msg, (juce::uint32)offset, (juce::uint32)length, (juce::uint32)random(), 1};
                    sendRaw(datagram, sizeof datagram);
                }
    close(raw);

    // Random bytes over the whole ring, header included.
    auto* ring = const_cast<unsigned char*>(MsgSession::sharedAreaBase());
    ASSERT_NE(ring, nullptr);
    for (int i = 0; i < MsgSession::kRingSize; ++i)
        ring[i] = (unsigned char)random();

    // Still alive and still delivering.
    EXPECT_TRUE(MessageHelper::postMessage(kMain, 1000, 0, 0, textBundle("after").get()));
    EXPECT_TRUE(main.waitForLine("OWN 1000 0 0 5 after", 20000));
    MessageHelper::postMessage(kMain, 9999, 0, 0, nullptr);
    EXPECT_EQ(main.waitForExit(20000), 0);
}
