#include "PureMVC/Facade.h"
#include "PureMVC/FastMutex.h"
#include "PureMVC/SimpleCommand.h"
#include "PureMVC/Thread.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <vector>

using namespace PureMVC;

namespace
{
constexpr int kTick = 1;
constexpr int kSenders = 2;
constexpr int kTicks = 20000;

class Tick : public juce::ReferenceCountedObject
{
public:
    Tick(int senderIndex, int sequence) : sender(senderIndex), seq(sequence) {}
    const int sender;
    const int seq;
};

/** Counts each (sender, sequence) it receives. */
struct Tally
{
    std::array<std::vector<std::atomic<int>>, kSenders> seen{std::vector<std::atomic<int>>(kTicks),
                                                             std::vector<std::atomic<int>>(kTicks)};
    void count(const Notification& note)
    {
        auto tick = note.getBodyAs<Tick>();
        seen[size_t(tick->sender)][size_t(tick->seq)].fetch_add(1);
    }
    /** Sequences not received exactly once. */
    int wrong() const
    {
        int wrongCount = 0;
        for (const auto& perSender : seen)
            for (const auto& times : perSender)
                wrongCount += times.load() != 1 ? 1 : 0;
        return wrongCount;
    }
};

Tally mediatorTally;
Tally commandTally;

class Counter : public Mediator
{
public:
    explicit Counter(int name, Tally* tally) : Mediator(name), m_tally(tally) {}
    ~Counter() override { m_alive = 0; }
    juce::Array<int> listNotificationInterests() const override { return {kTick}; }
    void handleNotification(const Notification::Ptr& note) override
    {
        EXPECT_EQ(m_alive.load(), 0x600d); // never called on a deleted mediator
        if (m_tally != nullptr)
            m_tally->count(*note);
    }

private:
    Tally* m_tally;
    std::atomic<int> m_alive{0x600d};
};

class CountTick : public SimpleCommand
{
public:
    void execute(const Notification::Ptr& note) override { commandTally.count(*note); }
};
} // namespace

TEST(ViewThreadTest, TwoThreadsNotifyOneCoreWhileAThirdChurnsItsMediators)
{
    auto core = Facade::getInstance("threads");
    core->registerMediator(new Counter(1, &mediatorTally));
    core->registerCommand<CountTick>(kTick);

    std::atomic<bool> sending{true};
    Thread churn("churn");
    std::atomic<int> churned{0};
    ASSERT_TRUE(churn.start(
        [&]
        {
            // Mediators come and go while deliveries to them run on the other threads.
            while (sending.load())
            {
                core->registerMediator(new Counter(2, nullptr));
                core->removeMediator(2);
                churned.fetch_add(1);
            }
        }));
    std::array<Thread, kSenders> senders;
    for (int s = 0; s < kSenders; ++s)
        ASSERT_TRUE(senders[size_t(s)].start(
            [s, &core]
            {
                for (int i = 0; i < kTicks; ++i)
                    core->sendNotification(kTick, new Tick(s, i));
            }));
    for (auto& sender : senders)
        EXPECT_TRUE(sender.join(60000));
    sending = false;
    EXPECT_TRUE(churn.join(60000));

    EXPECT_EQ(mediatorTally.wrong(), 0);
    EXPECT_EQ(commandTally.wrong(), 0);
    EXPECT_GT(churned.load(), 0);
    Facade::removeCore("threads");
}

namespace
{
class Blocking : public Mediator
{
public:
    Blocking(juce::WaitableEvent& entered, juce::WaitableEvent& release, std::atomic<bool>& deleted)
        : Mediator(7), m_entered(entered), m_release(release), m_deleted(deleted)
    {
    }
    ~Blocking() override { m_deleted = true; }
    juce::Array<int> listNotificationInterests() const override { return {kTick}; }
    void handleNotification(const Notification::Ptr&) override
    {
        m_entered.signal();
        m_release.wait(10000);
    }
    void onRemove() override { removed = true; }
    std::atomic<bool> removed{false};

private:
    juce::WaitableEvent& m_entered;
    juce::WaitableEvent& m_release;
    std::atomic<bool>& m_deleted;
};
} // namespace

TEST(ViewThreadTest, AMediatorRemovedDuringADeliveryOnAnotherThreadLivesUntilItEnds)
{
    juce::WaitableEvent entered, release;
    std::atomic<bool> deleted{false};
    auto core = Facade::getInstance("hold");
    core->registerMediator(new Blocking(entered, release, deleted));

    Thread deliverer("deliverer");
    ASSERT_TRUE(deliverer.start([&core] { core->sendNotification(kTick); }));
    ASSERT_TRUE(entered.wait(10000));

    auto removed = core->removeMediator(7);
    ASSERT_NE(removed, nullptr);
    EXPECT_TRUE(dynamic_cast<Blocking&>(*removed).removed.load());
    removed = nullptr;
    Facade::removeCore("hold"); // the whole core goes too
    core = nullptr;
    EXPECT_FALSE(deleted.load()); // the delivery still holds it

    release.signal();
    EXPECT_TRUE(deliverer.join(10000));
    EXPECT_TRUE(deleted.load());
}

TEST(ViewThreadTest, MutexesAreRecursiveOrFast)
{
    Mutex mutex;
    const Mutex::ScopedLock outer(mutex);
    EXPECT_TRUE(mutex.tryLock()); // the holder takes it again
    mutex.unlock();
    Thread other;
    std::atomic<int> tookIt{-1};
    ASSERT_TRUE(other.start([&] { tookIt = mutex.tryLock() ? 1 : 0; }));
    EXPECT_TRUE(other.join(10000));
    EXPECT_EQ(tookIt.load(), 0); // another thread cannot while it is held

    FastMutex fast;
    fast.lock();
    EXPECT_FALSE(fast.tryLock()); // not recursive
    fast.unlock();
    EXPECT_TRUE(fast.tryLock());
    fast.unlock();
    EXPECT_FALSE(other.isRunning());
}
