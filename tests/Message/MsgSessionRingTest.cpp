// The session's rules inside one process: records in the ring, init, helpers, receivers.
#include "support/MessageLoop.h"
#include "support/TestSupport.h"

#include "Platform/BusFolder.h"
#include "Platform/SharedMemory.h"

#include <LmCom.h>

#include <sys/stat.h>

using namespace LmComTesting;

namespace
{
class MsgSessionRingTest : public LmComTest
{
protected:
    void TearDown() override
    {
        MsgSession::purgeAll();
        LmComTest::TearDown();
    }

    static std::int32_t nextWrite()
    {
        std::int32_t value;
        std::memcpy(&value, MsgSession::sharedAreaBase() + 8, 4);
        return value;
    }
};

// A Bundle whose flattened form is exactly `payload` bytes (one byte array under "b").
Parcelable::Ptr bundleOfSize(int payload)
{
    auto bundle = Bundle::obtain();
    juce::MemoryBlock bytes((size_t)(payload - 26), true);
    bundle->putByteArray("b", bytes);
    return Parcelable::Ptr(bundle.get());
}

struct Counting : IMsgProc
{
    void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg) override
    {
        codes.push_back(msg->code);
    }
    void procUnknownMsg(int msg, int, int) override { unknown.push_back(msg); }
    std::vector<int> codes, unknown;
};
} // namespace

TEST_F(MsgSessionRingTest, RecordsAndTheirValidationRules)
{
    ASSERT_TRUE(MsgSession::mapSharedArea());
    const auto* ring = MsgSession::sharedAreaBase();
    EXPECT_EQ(hex(ring, 16), "00 00 04 00 10 00 00 00 10 00 00 00 00 00 04 00");

    // The record layout: "msg\0", the 16-bit length, the payload, the 16-bit byte sum.
    auto small = Bundle::obtain();
    int size = -7;
    const int first = MsgSession::putParcelable(Parcelable::Ptr(small.get()), size);
    EXPECT_EQ(first, 16);
    EXPECT_EQ(size, 12);
    EXPECT_EQ(hex(ring + 16, 20), "6D 73 67 00 0C 00 42 4E 44 4C 00 00 00 00 00 00 00 00 20 01");
    EXPECT_EQ(nextWrite(), 16 + 12 + 8);
    EXPECT_NE(MsgSession::getParcelable(16, 12), nullptr);
    EXPECT_EQ(MsgSession::getParcelable(16, 11), nullptr); // length differs from the stored one
    EXPECT_EQ(MsgSession::getParcelable(15, 12), nullptr); // before the data start
    EXPECT_EQ(MsgSession::getParcelable(17, 12), nullptr); // no magic there

    // The largest payload fills the ring from its start exactly (and, above 65535 bytes,
    // can never validate).
    int exact = 0;
    EXPECT_EQ(MsgSession::putParcelable(bundleOfSize(262120), exact), 16); // wrapped: it did not fit after 36
    EXPECT_EQ(exact, 262120);
    EXPECT_EQ(nextWrite(), 262144);

    // A record that ends exactly at the data end is written, and rejected by the reader (">=");
    // one that ends a byte earlier is read back.
    for (int length : {1000, 999})
    {
        const int end = length == 1000 ? 262144 : 262143;
        EXPECT_EQ(MsgSession::putParcelable(bundleOfSize(end - 8 - length - 16 - 8), exact), 16);
        const int offset = MsgSession::putParcelable(bundleOfSize(length), exact);
        EXPECT_EQ(offset + length + 8, end);
        EXPECT_EQ(MsgSession::getParcelable(offset, length) != nullptr, length == 999);
    }
    // After a wrap the next record starts at 16 and the one after it follows.
    EXPECT_EQ(MsgSession::putParcelable(bundleOfSize(262000), exact), 16);
    EXPECT_EQ(nextWrite(), 16 + 262000 + 8);

    // Too large for the ring: refused with a log line, never written past the area.
    LogLines::clear();
    int untouched = 5;
    EXPECT_EQ(MsgSession::putParcelable(bundleOfSize(262121), untouched), -1);
    EXPECT_EQ(untouched, 5);
    EXPECT_EQ(LogLines::count("E|Message/MsgSession_win32|310|MsgSession|writeRecord error | payload of 262121 bytes "
                              "does not fit the ring"),
              1);
    EXPECT_EQ(MsgSession::putParcelable(nullptr, untouched), -1);

    // Above 65535 only the low 16 bits are stored: such a record never validates.
    const int big = MsgSession::putParcelable(bundleOfSize(70000), exact);
    EXPECT_EQ(ring[big + 4] | (ring[big + 5] << 8), 70000 - 65536);
    EXPECT_EQ(MsgSession::getParcelable(big, 70000), nullptr);

    // A zero length always logs.
    LogLines::clear();
    EXPECT_EQ(MsgSession::getParcelable(16, 0), nullptr);
    EXPECT_EQ(LogLines::count("E|Message/MsgSession_win32|42|MsgSession|Please Init MsgSession First!"), 1);

    // Hostile handles never read outside the ring.
    for (int offset : {-1, 0, 262136, 262143, 0x7FFFFFFF, (int)0x80000000})
        for (int length : {-1, 1, 8, 65535, 0x7FFFFFFF, (int)0x80000000})
            EXPECT_EQ(MsgSession::getParcelable(offset, length), nullptr);
}

TEST_F(MsgSessionRingTest, InitRulesAndTheirLogLines)
{
    MessageLoop loop;
    Counting proc;
    MsgSession::config(-1, nullptr);
    MsgSession early;
    LogLines::clear();
    EXPECT_FALSE(early.init(&proc)); // no resolver yet
    EXPECT_TRUE(LogLines::all().empty());

    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppRadio, getDestName);
    MsgSession session;
    ASSERT_TRUE(session.init(&proc));
    EXPECT_NE(session.getNativeHandle(), nullptr);
    EXPECT_FALSE(session.init(&proc));
    EXPECT_EQ(LogLines::count("I|Message/MsgSession_win32|281|MsgSession|init AppType: AppRadio name: Radio"), 1);

    MsgSession twin;
    EXPECT_FALSE(twin.init(&proc));
    EXPECT_EQ(LogLines::count("E|Message/MsgSession_win32|284|MsgSession|init AppType: AppRadio create again!"), 1);

    // Only this user reaches the bus: its folder is 0700 and its ring 0600.
    struct stat info = {};
    ASSERT_EQ(stat(Platform::BusFolder::path().toRawUTF8(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
    ASSERT_EQ(stat(("/dev/shm" + Platform::SharedMemory::systemNameFor("LmIPCMsgShareMem")).toRawUTF8(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    // Senders without a destination log; the helper recycles the message all the same.
    RemoteMessage::purgeAll();
    LogLines::clear();
    auto message = RemoteMessage::obtain();
    message->code = 12;
    EXPECT_FALSE(IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppDAB, message));
    EXPECT_EQ(message->code, 0); // reset: it is back in the pool
    EXPECT_EQ(RemoteMessage::pooledCount(), 1);
    message = nullptr;
    EXPECT_FALSE(IPCMsg::MessageHelper::sendMessage(Pubhead::eAppType::AppDAB, 1, 0, 0, nullptr));
    EXPECT_EQ(
        LogLines::count("E|Message/MsgSession_win32|338|MsgSession|postMessage error | send : AppRadio dest: AppDAB"),
        1);
    EXPECT_EQ(LogLines::count("E|Message/MsgSession_win32|365|MsgSession|sendMessage error | AppDAB"), 1);

    // A second reference keeps the message intact.
    auto kept = RemoteMessage::obtain();
    auto second = kept;
    kept->code = 13;
    IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, kept);
    EXPECT_EQ(kept->code, 13);
    EXPECT_EQ(kept->sender, Pubhead::eAppType::AppRadio);
    loop.runUntil([&] { return !proc.codes.empty(); });
    EXPECT_EQ(proc.codes, std::vector<int>{13});

    // Copies share the endpoint; whichever goes first closes it, the other touches nothing.
    {
        MsgSession copy = session;
        EXPECT_EQ(copy.getNativeHandle(), session.getNativeHandle());
    }
    EXPECT_FALSE(IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, 1, 0, 0, nullptr));
    ASSERT_TRUE(twin.init(&proc)); // the name is free again

    ResourceAutoDelete();
    EXPECT_EQ(RemoteMessage::pooledCount(), 0);
    EXPECT_EQ(Parcel::pooledCount(), 0);
    EXPECT_FALSE(IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, 1, 0, 0, nullptr));
}

TEST_F(MsgSessionRingTest, AWiderBusFolderIsRefused)
{
    MessageLoop loop;
    Counting proc;
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppRadio, getDestName);
    juce::String folder, error;
    ASSERT_TRUE(Platform::BusFolder::prepare(folder, error));
    chmod(folder.toRawUTF8(), 0755);
    LogLines::clear();
    MsgSession session;
    EXPECT_FALSE(session.init(&proc));
    bool logged = false;
    for (auto& line : LogLines::all())
        logged =
            logged
            || line.rfind("E|Message/MsgSession_win32|290|MsgSession|init AppType: AppRadio error: refusing", 0) == 0;
    EXPECT_TRUE(logged);
}

TEST_F(MsgSessionRingTest, ReceiversAndDeliveryOrder)
{
    MessageLoop loop;
    Counting proc;
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppRadio, getDestName);
    MsgSession session;
    ASSERT_TRUE(session.init(&proc));

    static std::vector<std::string> calls;
    calls.clear();
    struct Named : BroadcastReceiver
    {
        void onReceive(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle) override
        {
            char address[32];
            std::snprintf(address, sizeof address, "%p", (const void*)this);
            calls.push_back(address + std::string(" ") + action.toStdString() + (bundle == nullptr ? " null" : ""));
        }
    };
    std::vector<std::unique_ptr<Named>> receivers;
    for (int i = 0; i < 4; ++i)
    {
        receivers.push_back(std::make_unique<Named>());
        receivers.back()->addAction("a");
        receivers.back()->addAction("b");
        EXPECT_TRUE(IPCMsg::MessageHelper::registerReceiver(*receivers.back()));
    }
    EXPECT_TRUE(IPCMsg::MessageHelper::registerReceiver(*receivers[0])); // still once
    EXPECT_TRUE(IPCMsg::MessageHelper::unregisterRecevier(*receivers[0]));
    EXPECT_FALSE(IPCMsg::MessageHelper::unregisterRecevier(*receivers[0]));
    Named copy(*receivers[1]); // a copy is not registered
    EXPECT_TRUE(copy.isContaintAction("a"));
    EXPECT_FALSE(IPCMsg::MessageHelper::unregisterRecevier(copy));
    receivers[3]->removeAction("a");
    receivers[2].reset(); // destroyed: unregistered

    for (const char* action : {"a", "A", "ab", ""})
        IPCMsg::MessageHelper::sendBroadcast(action, nullptr);
    loop.runUntil([] { return calls.size() >= 1; });
    loop.runFor(50);
    ASSERT_EQ(calls.size(), 1u); // receiver 1 only: 0 unregistered, 2 destroyed, 3 lost "a"
    char expected[32];
    std::snprintf(expected, sizeof expected, "%p", (const void*)receivers[1].get());
    EXPECT_EQ(calls[0], std::string(expected) + " a null");

    // Several matching receivers are called in ascending address order; a receiver of the
    // empty action gets a broadcast whose bundle has no action at all.
    calls.clear();
    for (auto& r : receivers)
        if (r != nullptr)
        {
            r->addAction("a");
            r->addAction("");
            IPCMsg::MessageHelper::registerReceiver(*r);
        }
    IPCMsg::MessageHelper::sendBroadcast("a", Bundle::obtain());
    loop.runUntil([] { return calls.size() >= 3; });
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_TRUE(std::is_sorted(calls.begin(), calls.end(),
                               [](const std::string& x, const std::string& y) {
                                   return std::stoull(x.substr(0, x.find(' ')), nullptr, 16)
                                          < std::stoull(y.substr(0, y.find(' ')), nullptr, 16);
                               }));
}

TEST_F(MsgSessionRingTest, CommandLinesReferToABundleInTheRing)
{
    ASSERT_TRUE(MsgSession::mapSharedArea());
    auto bundle = Bundle::obtain();
    bundle->putString("page", "settings");
    const auto text = CmdLineHelper::genCommandLine(bundle);
    EXPECT_EQ(text, "-d 16 -l " + juce::String(bundle->writeToParcel()->dataSize()));
    auto back = CmdLineHelper::parseCommandLine(text);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->getString("page", {}), "settings");
    EXPECT_NE(CmdLineHelper::parseCommandLine("  -l " + text.fromLastOccurrenceOf(" ", false, false) + "   -d 16 "),
              nullptr);

    EXPECT_EQ(CmdLineHelper::parseCommandLine("-l 40"), nullptr);    // slot -1
    EXPECT_EQ(CmdLineHelper::parseCommandLine("-d -l 40"), nullptr); // slot "0"
    EXPECT_EQ(CmdLineHelper::parseCommandLine(""), nullptr);
    EXPECT_EQ(CmdLineHelper::parseCommandLine("-d 99999999999999 -l -99999999999"), nullptr);
    EXPECT_EQ(CmdLineHelper::parseCommandLine("garbage -x -d 16"), nullptr);
}
