// Endpoints within one process: posts and sends from any thread, full queues, stale lookups.
#include "support/MessageLoop.h"
#include "support/TestSupport.h"

#include "Platform/BusFolder.h"
#include "Platform/Endpoint.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <thread>

using namespace LmComTesting;
using Platform::Endpoint;

namespace
{
class EndpointTest : public LmComTest
{
protected:
    std::unique_ptr<Endpoint> open(const juce::String& name, std::atomic<int>* counter = nullptr)
    {
        juce::String error;
        Endpoint::OpenResult result;
        auto endpoint = Endpoint::open(
            name,
            [counter](juce::int64, const Platform::WindowMessage&)
            {
                if (counter != nullptr)
                    ++*counter;
            },
            result, error);
        EXPECT_NE(endpoint, nullptr) << error;
        return endpoint;
    }

    // A socket at a name's address that nobody reads: its queue fills and stays full.
    int bindSink(const juce::String& name)
    {
        juce::String folder, error;
        EXPECT_TRUE(Platform::BusFolder::prepare(folder, error)) << error;
        const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, (folder + name + ".sock").toRawUTF8());
        EXPECT_EQ(bind(fd, (const sockaddr*)&address, sizeof address), 0);
        return fd;
    }

    MessageLoop loop;
};
} // namespace

TEST_F(EndpointTest, APostToAFullQueueGivesUpInsteadOfWaitingForEver)
{
    const int sink = bindSink("Sink");
    int delivered = 0;
    bool gaveUp = false;
    // From a worker thread and then from the message thread, which meanwhile keeps its own
    // endpoint's messages aside.
    ASSERT_TRUE(finishesWithin(10000,
                               [&]
                               {
                                   for (int i = 0; i < 1000 && !gaveUp; ++i)
                                   {
                                       gaveUp = !Endpoint::post("Sink", {1, i, 0, 0});
                                       delivered += gaveUp ? 0 : 1;
                                   }
                               }));
    EXPECT_TRUE(gaveUp);
    EXPECT_GT(delivered, 0);
    std::atomic<int> received{0};
    auto own = open("Own", &received);
    std::thread([] { Endpoint::post("Own", {1, 0, 0, 0}); }).join();
    EXPECT_FALSE(Endpoint::post("Sink", {1, 0, 0, 0}));
    EXPECT_TRUE(loop.runUntil([&] { return received == 1; }));
    close(sink);
}

TEST_F(EndpointTest, ExistsAnswersFromTheCacheUntilAPostFails)
{
    auto radio = open("Radio");
    EXPECT_FALSE(Endpoint::exists("USB"));
    ASSERT_TRUE(Endpoint::exists("Radio"));
    radio = nullptr;
    EXPECT_FALSE(Endpoint::isAlive("Radio"));
    EXPECT_TRUE(Endpoint::exists("Radio")); // the connection kept for posting still stands
    EXPECT_FALSE(Endpoint::post("Radio", {1, 0, 0, 0}));
    EXPECT_FALSE(Endpoint::exists("Radio"));
}

TEST_F(EndpointTest, WorkerThreadsSendWhileTheMessageThreadServesAndClosesEndpoints)
{
    std::atomic<int> received{0}, delivered{0};
    auto target = open("Target", &received);
    const int sink = bindSink("Sink");
    while (Endpoint::post("Sink", {1, 0, 0, 0}))
        ;
    std::atomic<bool> stop{false};
    std::atomic<int> finished{0};
    std::vector<std::thread> workers;
    for (int w = 0; w < 3; ++w)
        workers.emplace_back(
            [&, w]
            {
                for (int i = 0; !stop; ++i)
                    if (w == 0 ? Endpoint::send("Target", {1, i, 0, 0}) : Endpoint::post("Target", {1, i, 0, 0}))
                        ++delivered;
                ++finished;
            });

    // The message thread opens and closes endpoints, and waits on a full queue meanwhile, which
    // keeps what arrives for Target aside.
    for (int round = 0; round < 15; ++round)
    {
        auto churn = open("Churn" + juce::String(round % 3));
        EXPECT_FALSE(Endpoint::post("Sink", {1, round, 0, 0}));
        churn = nullptr;
        loop.runFor(5);
    }
    stop = true;
    // A send waits for its answer from this thread's loop.
    EXPECT_TRUE(loop.runUntil([&] { return finished == 3; }));
    for (auto& worker : workers)
        worker.join();
    EXPECT_GT(delivered.load(), 0);
    EXPECT_TRUE(loop.runUntil([&] { return received == delivered; })) << received << " of " << delivered;
    close(sink);
}
