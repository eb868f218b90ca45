// The table-driven harness of the application API tests.
#include "support/ApiHarness.h"

#include "main/applicationapi/BluetoothApi.h"
#include "main/applicationapi/RadioApi.h"
#include "main/applicationapi/USBApi.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace LmComTesting
{

namespace
{
constexpr int kSentinel = 9999; // ends what a command table sent

std::string showVar(const juce::var& value)
{
    if (value.isBool())
        return value ? "true" : "false";
    if (value.isInt() || value.isInt64() || value.isDouble())
        return value.toString().toStdString();
    if (auto* bytes = value.getBinaryData())
        return "[" + hex(bytes->getData(), (int)bytes->getSize()) + "]";
    return "'" + value.toString().toStdString() + "'";
}
} // namespace

std::string show(int value)
{
    return std::to_string(value);
}

std::string show(bool value)
{
    return value ? "true" : "false";
}

std::string show(const juce::String& value)
{
    return "'" + value.toStdString() + "'";
}

std::string show(const juce::MemoryBlock& bytes)
{
    return "[" + hex(bytes.getData(), (int)bytes.getSize()) + "]";
}

std::string show(const Bundle::Ptr& bundle)
{
    if (bundle == nullptr)
        return "null";
    std::vector<std::string> entries;
    for (Parcel::ValueMap::Iterator it(bundle->getValueMap()); it.next();)
        entries.push_back(it.getKey().toStdString() + "=" + showVar(*it.getValue()));
    for (auto it = bundle->getObjectMap().begin(); it != bundle->getObjectMap().end(); ++it)
        entries.push_back(it.getKey().toStdString() + "=" + show(it.getValue()));
    std::sort(entries.begin(), entries.end());
    std::string text = "{";
    for (auto& entry : entries)
        text += (text.size() > 1 ? " " : "") + entry;
    return text + "}";
}

std::string show(const Parcelable::Ptr& object)
{
    if (object == nullptr)
        return "none";
    if (auto* bundle = dynamic_cast<Bundle*>(object.get()))
        return show(Bundle::Ptr(bundle));
    return dynamic_cast<ParcelableArray*>(object.get()) != nullptr ? "ParcelableArray" : "RemoteMessage";
}

std::string show(const AppMessage::Ptr& message)
{
    if (message == nullptr)
        return "null";
    auto* object = message->pointerParameter.get();
    std::string text = "msg " + std::to_string(message->intParameter1) + " " + std::to_string(message->intParameter2)
                       + " " + std::to_string(message->intParameter3) + " ";
    if (object == nullptr)
        return text + "none";
    auto* parcelable = dynamic_cast<Parcelable*>(object);
    return text + (parcelable != nullptr ? show(Parcelable::Ptr(parcelable)) : "object");
}

std::string show(const InfoMedia::Ptr& info)
{
    return info == nullptr ? "null" : show(info->enBundle());
}

std::string CallLog::take()
{
    std::string text;
    for (auto& call : m_calls)
        text += (text.empty() ? "" : "; ") + call;
    m_calls.clear();
    return text;
}

void ApiTest::deliver(AppServiceApi& api, int code, int param1, int param2, juce::ReferenceCountedObject* object)
{
    // What the API's manager does with each incoming message. AppServiceCallBack is a private
    // base of every API, which only a C-style cast reaches from here.
    auto* callBack = (AppServiceCallBack*)&api;
    callBack->remoteCallBack(AppMessage::Ptr(new AppMessage(code, param1, param2, object)));
}

std::vector<std::string> ApiTest::flush(AppServiceApi& api, size_t first)
{
    const int markers = main.count(kSentinel);
    api.postMessage(kSentinel, 0, 0, nullptr); // kept in order behind what went before
    EXPECT_TRUE(loop->runUntil([&] { return main.count(kSentinel) > markers; }));
    std::vector<std::string> text;
    auto requests = main.requests();
    for (size_t i = first; i < requests.size(); ++i)
    {
        auto& r = requests[i];
        if (r.code != kSentinel)
            text.push_back(std::to_string(r.code) + " " + std::to_string(r.param1) + " " + std::to_string(r.param2)
                           + (r.bundle != nullptr ? " " + show(r.bundle) : ""));
        EXPECT_EQ(r.sender, api.getAppType());
    }
    return text;
}

void ApiTest::expectCommands(AppServiceApi& api, const std::vector<Sent>& table)
{
    const size_t first = main.requests().size();
    std::vector<std::string> expected;
    for (auto& row : table)
    {
        row.command();
        if (!row.received.empty())
            expected.push_back(row.received);
    }
    postToApp(api.getAppType(), ServiceCode::kConnectAck, 0, 0);
    EXPECT_EQ(flush(api, first), expected);
}

void ApiTest::expectCommonNotifications(AppServiceApi& api, CallLog& log, const std::string& forwarded,
                                        bool powerOffAnswered)
{
    std::istringstream names(forwarded);
    std::set<std::string> on{std::istream_iterator<std::string>(names), {}};
    auto row = [&](int code, int p1, int p2, const char* name, const std::string& call) {
        return Incoming{code, p1, p2, nullptr, on.count(name) != 0 ? call : ""};
    };
    const size_t first = main.requests().size();
    expectIncoming(api, log,
                   {row(1195, 3, 4, "notify", "notify 3 4"), row(1203, 5, 0, "powerOff", "powerOff 5"),
                    row(1202, 1, 0, "state", "state true"), row(1202, 0, 0, "state", "state false"),
                    row(1322, 6, 7, "command", "command 6 7"), row(1194, 8, 0, "event", "event 8"),
                    row(1199, 9, 0, "quit", "quit msg 1199 9 0 none")});
    EXPECT_EQ(flush(api, first), powerOffAnswered ? std::vector<std::string>{"1204 5 0"} : std::vector<std::string>{});
}

void ApiTest::expectIncoming(AppServiceApi& api, CallLog& log, const std::vector<Incoming>& table)
{
    log.take();
    for (auto& row : table)
    {
        deliver(api, row.code, row.param1, row.param2, row.object.get());
        EXPECT_EQ(log.take(), row.calls) << "code " << row.code << " " << row.param1 << " " << row.param2;
    }
}

void ApiTest::expectHostileDropped(AppServiceApi& api, CallLog& log, std::initializer_list<int> codes, int param1,
                                   bool bundlesToo)
{
    auto objects = notABundle();
    if (bundlesToo)
        for (auto& bundle : badBundles())
            objects.push_back(bundle);
    log.take();
    for (int code : codes)
        for (size_t i = 0; i < objects.size(); ++i)
        {
            deliver(api, code, param1, 0, objects[i].get());
            EXPECT_EQ(log.take(), "") << "code " << code << ", hostile object " << i;
        }
}

void ApiTest::expectConstructorCallBacks(AppServiceApi& api, RecordingCallBacks& callBacks)
{
    callBacks.calls.clear();
    deliver(api, ServiceCode::kViewShow, 3, 0);
    auto show = AppCommandLine::genCmdPageShow(Pubhead::eAppServiceType::SrvAuxIn, true);
    deliver(api, ServiceCode::kCommandInfo, 0, 0, RemoteObjFormat::formatCommandLine(show).get());
    EXPECT_EQ(callBacks.calls, (std::vector<std::string>{"show 3 1725", "pageshow 15 parking=1 extra=-"}));
}

std::vector<Incoming> ApiTest::messageRows(const std::string& name, std::initializer_list<int> codes)
{
    std::vector<Incoming> rows;
    for (int code : codes)
        rows.push_back(
            {code, 1, 2, nullptr, name + " msg " + std::to_string(code) + " 1 2 none " + std::to_string(code)});
    return rows;
}

std::vector<juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>> ApiTest::notABundle()
{
    return {nullptr, ParcelableArray::obtain().get(), RemoteMessage::obtain().get(), new juce::DynamicObject()};
}

std::vector<juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>> ApiTest::badBundles()
{
    auto notBytes = Bundle::obtain();
    notBytes->putInt("data", 7);
    notBytes->putString("data2", "x");
    const int twoInts[] = {1, 2};
    const unsigned char twelveBytes[12] = {};
    return {Bundle::obtain().get(), notBytes.get(), RemoteObjFormat::formatIntArray(twoInts, 2).get(),
            RemoteObjFormat::formatByteArray(twelveBytes, 12).get()};
}

Bundle::Ptr dataBundle(std::initializer_list<int> bytes)
{
    juce::MemoryBlock block;
    for (int b : bytes)
    {
        const auto byte = (unsigned char)b;
        block.append(&byte, 1);
    }
    auto bundle = Bundle::obtain();
    bundle->putByteArray(ApiMessageHelper::KEY_DATA, block);
    return bundle;
}

//==============================================================================
namespace
{
std::vector<std::string> sApiArgs;
const juce::String kTitle = juce::String::fromUTF8("Caf\xc3\xa9 \xe5\x8c\x97\xe4\xba\xac %s");
} // namespace

void ApiProcessTest::SetUp()
{
    LmComTest::SetUp();
#ifndef LMCOM_MAINSERVICE
    GTEST_SKIP() << "the tools are not built (LMCOM_BUILD_TOOLS=OFF)";
#endif
    loop = std::make_unique<MessageLoop>();
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppNavi, getDestName);
    session = std::make_unique<MsgSession>();
    ASSERT_TRUE(session->init(&ignored));
}

void ApiProcessTest::TearDown()
{
    session = nullptr;
    MsgSession::purgeAll();
    loop = nullptr;
    LmComTest::TearDown();
}

void ApiProcessTest::post(int appType, int code, int param1, int param2, Parcelable* object)
{
    ASSERT_TRUE(IPCMsg::MessageHelper::postMessage(appType, code, param1, param2, object));
}

std::string ApiProcessTest::title()
{
    return kTitle.toStdString();
}

namespace
{
class RadioPrinter : public Recorder<RadioCallBack>
{
public:
    void onRadioMessage(const AppMessage::Ptr& m, int code) override { log.add("radio", m, code); }
};

class USBPrinter : public Recorder<USBCallBack>
{
public:
    void onUSBMessage(const AppMessage::Ptr& m, int code) override { log.add("usb", m, code); }
};

class BluetoothPrinter : public Recorder<BluetoothCallBack>,
                         public BluetoothIpodInfoCallBack,
                         public BluetoothPGNCallBack
{
public:
    void onBluetoothMessage(const AppMessage::Ptr& m, int code) override { log.add("bt", m, code); }
    void onPhoneEvent(int p1, int p2) override { log.add("phone", p1, p2); }
    void onLinkEvent(int p1, int p2) override { log.add("link", p1, p2); }
    void onBluetoothCommand(int p1, int p2) override { log.add("command1177", p1, p2); }
    void onIpodInfo(int a, int b, int c) override { log.add("ipod", a, b, c); }
    void onPGNData(int p1, int p2, const Bundle::Ptr& data) override { log.add("pgn", p1, p2, data); }
};

class ApiRoleApplication : public juce::JUCEApplicationBase, private juce::Timer
{
public:
    const juce::String getApplicationName() override { return "api"; }
    const juce::String getApplicationVersion() override { return "1"; }
    bool moreThanOneInstanceAllowed() override { return true; }
    void anotherInstanceStarted(const juce::String&) override {}
    void suspended() override {}
    void resumed() override {}
    void unhandledException(const std::exception*, const juce::String&, int) override {}
    void shutdown() override {}
    void systemRequestedQuit() override
    {
        say("QUIT");
        quit();
    }

    void initialise(const juce::String&) override
    {
        const std::string which = sApiArgs.empty() ? "" : sApiArgs[0];
        for (auto* log : {&m_radio.log, &m_usb.log, &m_bluetooth.log})
            log->after = [](const std::string& call) { say("CB %s", call.c_str()); };
        if (which == "Radio")
        {
            auto tuner = InfoTuner::obtain();
            tuner->sourceID = 0;
            tuner->bandText = "FM";
            tuner->inforText = kTitle;
            RadioApi::getInstance()->bindCallBack(&m_radio);
            RadioApi::getInstance()->sendToInfoBar(tuner);
        }
        if (which == "USB")
        {
            auto media = InfoMedia::obtain();
            media->curNum = 5;
            media->title = kTitle;
            USBApi::getInstance()->bindCallBack(&m_usb);
            USBApi::getInstance()->sendToInfoBar(media, true);
        }
        if (which == "Bluetooth")
        {
            auto phone = InfoBT::obtain();
            phone->inforText = kTitle;
            auto* api = BluetoothApi::getInstance();
            api->bindCallBack(&m_bluetooth);
            api->bindIpodInfoCallBack(&m_bluetooth);
            api->bindPGNCallBack(&m_bluetooth);
            api->startA2DPSrc();
            api->sendToInfoBar(phone);
        }
        say("READY");
        startTimer(60000); // never outlive a test that went away
    }

private:
    void timerCallback() override { quit(); }

    RadioPrinter m_radio;
    USBPrinter m_usb;
    BluetoothPrinter m_bluetooth;
};
} // namespace

LMCOM_CHILD_ROLE(api)
{
    sApiArgs = args;
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* { return new ApiRoleApplication(); };
    const int status = juce::JUCEApplicationBase::main();
    MsgSession::purgeAll();
    return status;
}

} // namespace LmComTesting
