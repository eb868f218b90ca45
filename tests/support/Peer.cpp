// The "peer" child role: an application process on the test's bus that reports what it
// receives, one line each, and reacts as its mode says.
#include "support/Peer.h"

#include "support/TestSupport.h"

#include "Platform/Endpoint.h"

#include <unistd.h>

namespace LmComTesting
{

void RecordingProc::procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    seen.push_back({true, msg->code, msg->param1, msg->param2, msg->sender,
                    Bundle::Ptr(dynamic_cast<Bundle*>(msg->object.get()))});
    msg->object = nullptr; // keep the Bundle: the message is recycled after this call
}

void RecordingProc::procUnknownMsg(int msg, int wParam, int lParam)
{
    seen.push_back({false, msg, wParam, lParam, -1, nullptr});
}

int RecordingProc::count(int code) const
{
    int n = 0;
    for (auto& s : seen)
        n += s.own && s.code == code ? 1 : 0;
    return n;
}

static juce::MemoryBlock stampBytes(int writer, int seq, int bytes)
{
    juce::MemoryBlock block((size_t)bytes);
    juce::uint32 state = (juce::uint32)(writer * 7919 + seq * 104729 + 1);
    for (int i = 0; i < bytes; ++i)
    {
        state = state * 1664525u + 1013904223u;
        static_cast<unsigned char*>(block.getData())[i] = (unsigned char)(state >> 24);
    }
    return block;
}

RemoteMessage::Ptr makeStamped(int writer, int seq, int bytes)
{
    auto bundle = Bundle::obtain();
    bundle->putInt("writer", writer);
    bundle->putInt("seq", seq);
    bundle->putByteArray("bytes", stampBytes(writer, seq, bytes));
    auto message = RemoteMessage::obtain();
    message->code = kStampedCode;
    message->param1 = writer;
    message->param2 = seq;
    message->object = bundle.get();
    return message;
}

bool isIntactStamped(const RemoteMessage& msg)
{
    auto* bundle = dynamic_cast<Bundle*>(msg.object.get());
    if (msg.code != kStampedCode || bundle == nullptr)
        return false;
    const int writer = bundle->getInt("writer", -1), seq = bundle->getInt("seq", -1);
    auto* bytes = bundle->getByteArray("bytes");
    return writer == msg.param1 && seq == msg.param2 && bytes != nullptr
           && *bytes == stampBytes(writer, seq, (int)bytes->getSize());
}

namespace
{
// Modes: "echo" answers every message to its sender with code + 1; "slowfirst" blocks its
// message thread for args[2] ms on the first message; "die" exits at once on code 66;
// "sendback" answers code 100 with a synchronous 200 to the sender; "cross" answers code 300
// with a synchronous 301 to the type args[2]. Every mode prints what it receives, appends each
// code to $LMCOM_ROOT/handled.txt before returning, and stops on code 9999.
class PeerProc : public IMsgProc
{
public:
    PeerProc(std::string mode, int extra) : m_mode(std::move(mode)), m_slowMs(extra), m_other(extra) {}

    void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg) override
    {
        if (msg->code == kStampedCode)
            say("OWN %d %d %d %d %s", msg->code, msg->param1, msg->param2, msg->sender,
                isIntactStamped(*msg) ? "intact" : "DAMAGED");
        else
        {
            auto* bundle = dynamic_cast<Bundle*>(msg->object.get());
            say("OWN %d %d %d %d %s", msg->code, msg->param1, msg->param2, msg->sender,
                bundle != nullptr ? bundle->getString("text", "-").toRawUTF8() : "-");
        }
        // Written before the handler returns, so a sender can check that a send waited for it.
        juce::File(juce::SystemStats::getEnvironmentVariable("LMCOM_ROOT", "/tmp") + "/handled.txt")
            .appendText(juce::String(msg->code) + "\n");
        if (m_mode == "slowfirst" && m_first)
            juce::Thread::sleep(m_slowMs);
        m_first = false;
        if (m_mode == "die" && msg->code == 66)
            _exit(0);
        if (m_mode == "echo" && msg->code != 9999)
            IPCMsg::MessageHelper::postMessage(msg->sender, msg->code + 1, msg->param1, msg->param2,
                                               msg->object != nullptr ? msg->object->clone().get() : nullptr);
        if (m_mode == "sendback" && msg->code == 100)
        {
            IPCMsg::MessageHelper::sendMessage(msg->sender, 200, 0, 0, nullptr);
            say("SENT_BACK");
        }
        if (m_mode == "cross" && msg->code == 300)
        {
            IPCMsg::MessageHelper::sendMessage(m_other, 301, 0, 0, nullptr);
            say("CROSS_DONE");
        }
        if (msg->code == 9999)
            quit = true;
    }

    void procUnknownMsg(int msg, int wParam, int lParam) override { say("UNKNOWN %d %d %d", msg, wParam, lParam); }

    bool quit = false;

private:
    std::string m_mode;
    int m_slowMs;
    int m_other;
    bool m_first = true;
};

class PeerReceiver : public BroadcastReceiver
{
public:
    void onReceive(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle) override
    {
        say("BROADCAST %s %s", action.toRawUTF8(),
            bundle != nullptr ? bundle->getString("text", "-").toRawUTF8() : "null");
    }
};
} // namespace

// args: eAppType [mode [slowMs | otherType]]
LMCOM_CHILD_ROLE(peer)
{
    MessageLoop loop;
    const int type = std::stoi(args.at(0));
    PeerProc proc(args.size() > 1 ? args[1] : "echo", args.size() > 2 ? std::stoi(args[2]) : 0);
    PeerReceiver receiver;
    receiver.addAction("news");
    IPCMsg::MessageHelper::registerReceiver(receiver);

    IPCMsg::MessageHelper::config(type, getDestName);
    MsgSession session;
    if (!session.init(&proc))
    {
        say("INIT_FAILED");
        return 3;
    }
    say("READY");
    loop.runUntil([&proc] { return proc.quit; }, 60000);
    say("BYE");
    return proc.quit ? 0 : 4;
}

// args: eAppType dest count bytes [writerId]: posts stamped messages as fast as it can.
LMCOM_CHILD_ROLE(writer)
{
    MessageLoop loop;
    const int type = std::stoi(args.at(0)), dest = std::stoi(args.at(1)), count = std::stoi(args.at(2)),
              bytes = std::stoi(args.at(3)), writer = args.size() > 4 ? std::stoi(args[4]) : type;
    IPCMsg::MessageHelper::config(type, getDestName);
    if (!MsgSession::mapSharedArea())
        return 3;
    say("READY");
    int delivered = 0;
    for (int seq = 0; seq < count; ++seq)
        delivered += IPCMsg::MessageHelper::postMessage(dest, makeStamped(writer, seq, bytes)) ? 1 : 0;
    say("DONE %d", delivered);
    return 0;
}

} // namespace LmComTesting

namespace LmComTesting
{
// args: eAppType otherType count: waits for the other endpoint, posts `count` messages to it as
// fast as it can while the other does the same, then serves until the other's quit message.
LMCOM_CHILD_ROLE(flood)
{
    MessageLoop loop;
    const int type = std::stoi(args.at(0)), other = std::stoi(args.at(1)), count = std::stoi(args.at(2));
    RecordingProc proc;
    IPCMsg::MessageHelper::config(type, getDestName);
    MsgSession session;
    if (!session.init(&proc))
        return 3;
    say("READY");
    loop.runUntil([other] { return Platform::Endpoint::exists(IPCMsg::MessageHelper::getDestName(other)); }, 10000);
    int posted = 0;
    for (int i = 0; i < count; ++i)
        posted += IPCMsg::MessageHelper::postMessage(other, 800, i, 0, nullptr) ? 1 : 0;
    say("POSTED %d", posted);
    loop.runUntil([&proc] { return proc.count(9999) > 0; }, 30000);
    say("RECEIVED %d", proc.count(800));
    return 0;
}
} // namespace LmComTesting
