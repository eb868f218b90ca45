// The connection of an application to the main service: connect requests, the buffer of what
// waits for the acknowledgement, heartbeats, and what reaches the application.
#include "support/AppPeer.h"
#include "support/ChildProcess.h"

#include "Platform/Endpoint.h"

#include <array>

using namespace LmComTesting;

namespace
{
constexpr auto kRadio = Pubhead::eAppType::AppRadio;

class MainServiceManagerTest : public FrameworkTest
{
protected:
    std::vector<int> codesFrom(size_t first) const
    {
        std::vector<int> codes;
        for (size_t i = first; i < main.seen.size(); ++i)
            codes.push_back(main.seen[i].code);
        return codes;
    }
};
} // namespace

TEST_F(MainServiceManagerTest, AppStartedFirstKeepsFiftyRequestsUntilTheAcknowledgement)
{
    // The application posts 49 requests at once; the main service does not answer yet.
    ChildProcess app("app", {std::to_string(kRadio), "posts=49"});
    ASSERT_TRUE(app.waitForLine("READY"));

    // Its connect request, with its type, comes every second.
    ASSERT_TRUE(waitFor(ServiceCode::kConnectRequest, 3));
    double previous = 0;
    for (auto& s : main.seen)
    {
        EXPECT_EQ(std::make_tuple(s.code, s.param1, s.param2, s.sender),
                  std::make_tuple(ServiceCode::kConnectRequest, (int)kRadio, 0, (int)kRadio));
        EXPECT_TRUE(previous == 0 || (s.timeMs - previous >= 700 && s.timeMs - previous <= 3000))
            << s.timeMs - previous;
        previous = s.timeMs;
    }

    // A heartbeat is answered at once, not kept.
    postToApp(kRadio, ServiceCode::kHeartbeat, 0, 0);
    ASSERT_TRUE(waitFor(ServiceCode::kHeartbeatReply, 1));
    EXPECT_EQ(main.seen.back().param1, kRadio);

    // "Please connect" right after a tick is answered at once: its connect request arrives
    // before the answer to a heartbeat posted behind it, long before the next tick.
    ASSERT_TRUE(waitFor(ServiceCode::kConnectRequest, main.count(ServiceCode::kConnectRequest) + 1));
    const size_t mark = main.seen.size();
    postToApp(kRadio, ServiceCode::kPleaseConnect, 0, 0);
    postToApp(kRadio, ServiceCode::kHeartbeat, 0, 0);
    ASSERT_TRUE(waitFor(ServiceCode::kHeartbeatReply, 2));
    EXPECT_EQ(main.seen.at(mark).code, ServiceCode::kConnectRequest);

    // Two power-off requests: the answer to the first is the 50th buffered message, the
    // answer to the second would be the 51st and is lost.
    postToApp(kRadio, ServiceCode::kPowerOff, 31, 0);
    postToApp(kRadio, ServiceCode::kPowerOff, 32, 0);
    postToApp(kRadio, ServiceCode::kConnectAck, 0, 0);
    ASSERT_TRUE(waitFor(7777, 1));
    auto requests = main.requests();
    ASSERT_EQ(requests.size(), 51u);
    for (int i = 0; i < 49; ++i)
        EXPECT_EQ(std::make_tuple(requests[i].code, requests[i].param1, requests[i].param2),
                  std::make_tuple(6000 + i, i, -i));
    EXPECT_EQ(std::make_tuple(requests[49].code, requests[49].param1, requests[49].param2),
              std::make_tuple(ServiceCode::kPowerOffReady, 31, 0));
    EXPECT_EQ(std::make_tuple(requests[50].code, requests[50].param1), std::make_tuple(7777, 1));

    // Connected: "please connect" sends nothing and restarts no timer.
    const size_t connected = main.seen.size();
    postToApp(kRadio, ServiceCode::kPleaseConnect, 0, 0);
    postToApp(kRadio, ServiceCode::kHeartbeat, 0, 0);
    ASSERT_TRUE(waitFor(ServiceCode::kHeartbeatReply, 3));
    loop->runFor(1300);
    EXPECT_EQ(codesFrom(connected), std::vector<int>{ServiceCode::kHeartbeatReply});

    // A second acknowledgement logs again and flushes nothing: only the app's own 7777 follows.
    const size_t again = main.seen.size();
    postToApp(kRadio, ServiceCode::kConnectAck, 0, 0);
    ASSERT_TRUE(waitFor(7777, 2));
    EXPECT_TRUE(app.waitForLine("CONNECTED 2"));
    EXPECT_EQ(codesFrom(again), std::vector<int>{7777});

    postToApp(kRadio, ServiceCode::kQuit, 0, 0);
    EXPECT_TRUE(app.waitForLine("QUIT"));
    EXPECT_EQ(app.waitForExit(), 0);
}

TEST_F(MainServiceManagerTest, DirectRepliesSkipTheBufferAndMessagesTravelWhole)
{
    TestApi api(Pubhead::eAppType::AppUSB, true);
    auto& manager = *api.getMainServiceManager();
    ASSERT_TRUE(waitFor(ServiceCode::kConnectRequest, 1));

    auto bundle = Bundle::obtain();
    bundle->putString("text", "kept");
    manager.postMessage(AppMessage::Ptr(new AppMessage(5001, 3, 4, bundle.get())));
    // An attached object that is not a Parcelable travels as null.
    manager.postMessage(AppMessage::Ptr(new AppMessage(5002, 5, 6, AppCommandLine::genCmdPageShow({}, false).get())));
    manager.postMessage(AppMessage::Ptr());
    manager.replyPowerOffReady();
    manager.systemBeep();
    ASSERT_TRUE(waitFor(ServiceCode::kSystemBeep, 1));
    EXPECT_EQ(main.requests().size(), 2u); // power-off ready and beep, with the type; 5001 and 5002 wait
    for (auto& r : main.requests())
        EXPECT_EQ(r.param1, (int)Pubhead::eAppType::AppUSB);

    acknowledge(api);
    ASSERT_TRUE(waitFor(5002, 1));
    auto requests = main.requests();
    ASSERT_EQ(requests.size(), 4u);
    EXPECT_EQ(std::make_tuple(requests[2].code, requests[2].param1, requests[2].param2, textOf(requests[2].bundle)),
              std::make_tuple(5001, 3, 4, std::string("kept")));
    EXPECT_EQ(requests[3].bundle, nullptr);
    EXPECT_EQ(LogLines::count("I|applicationapi/MainServiceManager|126|MainServiceManager|AppUSB connect succeed"), 1);

    // Incoming: the session recycles its message after the call, but what the application got
    // stays whole.
    bundle = Bundle::obtain();
    bundle->putString("text", "payload");
    postToApp(Pubhead::eAppType::AppUSB, 4242, 7, 8, bundle.get());
    ASSERT_TRUE(loop->runUntil([&] { return api.countReceived(4242) == 1; }));
    auto& received = *api.received.back().message;
    EXPECT_EQ(std::make_tuple(received.intParameter2, received.intParameter3), std::make_tuple(7, 8));
    EXPECT_EQ(textOf(Bundle::Ptr(dynamic_cast<Bundle*>(received.pointerParameter.get()))), "payload");
    EXPECT_FALSE(api.received.back().handled);
}

TEST_F(MainServiceManagerTest, ACopyFlushesTheSameBufferedMessagesAgain)
{
    TestApi api(kRadio, true);
    auto& original = *api.getMainServiceManager();
    auto bundle = Bundle::obtain();
    bundle->putString("text", "twice");
    original.postMessage(5100, 1, 0, bundle);
    original.postMessage(5101, 2, 0, nullptr);

    MainServiceManager copy(original);
    EXPECT_EQ(copy.getNativeHandle(), original.getNativeHandle());
    original.connectSucceed();
    copy.connectSucceed();
    original.connectSucceed(); // both buffers are empty now
    ASSERT_TRUE(waitFor(5101, 2));
    loop->runFor(100);

    auto requests = main.requests();
    ASSERT_EQ(requests.size(), 4u);
    for (int round = 0; round < 2; ++round)
    {
        EXPECT_EQ(std::make_tuple(requests[2 * round].code, textOf(requests[2 * round].bundle)),
                  std::make_tuple(5100, std::string("twice")));
        EXPECT_EQ(requests[2 * round + 1].code, 5101);
    }
}

namespace
{
struct RecordingService : AppServiceCallBack
{
    void remoteCallBack(const AppMessage::Ptr& message) override
    {
        seen.push_back({message->intParameter1, message->intParameter2, message->intParameter3,
                        message->pointerParameter != nullptr ? 1 : 0});
    }
    std::vector<std::array<int, 4>> seen;
};
} // namespace

// What arrives without a RemoteMessage (an invalid record, another message number) reaches
// the service callback as the three numbers.
TEST_F(MainServiceManagerTest, MessagesWithoutARecordReachTheCallBackAsNumbers)
{
    RecordingService service;
    MainServiceManager manager(&service, kRadio, Pubhead::eAppType::AppMain, true);
    ASSERT_TRUE(Platform::Endpoint::post("Radio", {32778, 0, 5, 0}));
    ASSERT_TRUE(Platform::Endpoint::post("Radio", {1024, -1, 7, 0}));
    ASSERT_TRUE(loop->runUntil([&] { return service.seen.size() == 2; }));
    EXPECT_EQ(service.seen[0], (std::array<int, 4>{32778, 0, 5, 0}));
    EXPECT_EQ(service.seen[1], (std::array<int, 4>{1024, -1, 7, 0}));
}
