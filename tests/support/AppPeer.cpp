// An application process for cross-process tests of the framework (the "app" child role), and
// the recorders and fixture that the framework tests share.
#include "support/AppPeer.h"
#include "support/ChildApplication.h"

namespace LmComTesting
{

std::string textOf(const Bundle::Ptr& bundle)
{
    return bundle != nullptr ? bundle->getString("text", "-").toStdString() : "-";
}

void RecordingResponse::record(const char* name, int a, int b)
{
    calls.push_back(std::string(name) + " " + std::to_string(a) + (b == INT_MIN ? "" : " " + std::to_string(b)));
}

void RecordingResponse::onPowerOff(int p1)
{
    record("onPowerOff", p1);
    GeneralResponse::onPowerOff(p1);
}

void RecordingResponse::onQuit(const AppMessage::Ptr& message)
{
    record("onQuit", message->intParameter2);
    GeneralResponse::onQuit(message);
}

void RecordingCallBacks::record(const std::string& call)
{
    calls.push_back(call);
    if (after)
        after(call);
}

void RecordingCallBacks::onSourceEnter(Pubhead::eAppServiceType::EnumTypeTag service, bool parking, bool frontShow,
                                       const Bundle::Ptr& extra)
{
    record("sourceenter " + std::to_string(service) + " parking=" + std::to_string(parking)
           + " front=" + std::to_string(frontShow) + " extra=" + textOf(extra));
}

void RecordingCallBacks::onSourceExit(Pubhead::eAppServiceType::EnumTypeTag service,
                                      Pubhead::eAppServiceType::EnumTypeTag next, const Bundle::Ptr& extra)
{
    record("sourceexit " + std::to_string(service) + " next=" + std::to_string(next) + " extra=" + textOf(extra));
}

void RecordingCallBacks::onPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool parking,
                                    const Bundle::Ptr& extra)
{
    record("pageshow " + std::to_string(service) + " parking=" + std::to_string(parking) + " extra=" + textOf(extra));
}

void RecordingCallBacks::onPageHide(Pubhead::eAppServiceType::EnumTypeTag service,
                                    Pubhead::eAppServiceType::EnumTypeTag next, const Bundle::Ptr& extra)
{
    record("pagehide " + std::to_string(service) + " next=" + std::to_string(next) + " extra=" + textOf(extra));
}

TestApi::TestApi(Pubhead::eAppType::EnumTypeTag type, bool initSession, bool install)
    : AppServiceApi(type, initSession), m_response(getGeneralService())
{
    if (install)
        installResponse();
}

void TestApi::remoteCallBack(const AppMessage::Ptr& message)
{
    const bool handled = getGeneralService()->processMessage(message);
    received.push_back({message, handled});
    if (onMessage)
        onMessage(message, handled);
}

int TestApi::countReceived(int code) const
{
    return (int)std::count_if(received.begin(), received.end(),
                              [code](auto& r) { return r.message->intParameter1 == code; });
}

void MainRecorder::procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    seen.push_back({msg->code, msg->param1, msg->param2, msg->sender,
                    Bundle::Ptr(dynamic_cast<Bundle*>(msg->object.get())), juce::Time::getMillisecondCounterHiRes()});
    msg->object = nullptr; // keep the Bundle: the message is recycled after this call
}

int MainRecorder::count(int code) const
{
    return (int)std::count_if(seen.begin(), seen.end(), [code](auto& s) { return s.code == code; });
}

std::vector<MainReceived> MainRecorder::requests() const
{
    std::vector<MainReceived> result;
    std::copy_if(seen.begin(), seen.end(), std::back_inserter(result),
                 [](auto& s)
                 { return s.code != ServiceCode::kConnectRequest && s.code != ServiceCode::kHeartbeatReply; });
    return result;
}

void FrameworkTest::SetUp()
{
    LmComTest::SetUp();
    loop = std::make_unique<MessageLoop>();
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppMain, getDestName);
    mainSession = std::make_unique<MsgSession>();
    ASSERT_TRUE(mainSession->init(&main));
}

void FrameworkTest::TearDown()
{
    mainSession = nullptr;
    MsgSession::purgeAll();
    loop = nullptr;
    LmComTest::TearDown();
}

void FrameworkTest::acknowledge(TestApi& api)
{
    const int before = api.countReceived(ServiceCode::kConnectAck);
    postToApp(api.getAppType(), ServiceCode::kConnectAck, 0, 0);
    ASSERT_TRUE(loop->runUntil([&] { return api.countReceived(ServiceCode::kConnectAck) > before; }));
}

void FrameworkTest::postToApp(int appType, int code, int param1, int param2, Parcelable* object)
{
    ASSERT_TRUE(IPCMsg::MessageHelper::postMessage(appType, code, param1, param2, object));
}

bool FrameworkTest::waitFor(int code, int n, int timeoutMs)
{
    return loop->runUntil([&] { return main.count(code) >= n; }, timeoutMs);
}

//==============================================================================
namespace
{
std::vector<std::string> sAppArgs;
const juce::String kInfoTitle = juce::String::fromUTF8("Caf\xc3\xa9 \xe5\x8c\x97\xe4\xba\xac %s");

// A JUCE application, so that the default quit handling really quits it.
// args: eAppType [posts=N] [page=N] [infobar=tuner|media]. At start it posts N requests
// (6000 + i), asks for page N and sends an info-bar record (all kept until connected). Prints
// "READY", then "GOT code p1 p2 handled|unhandled" per message, "CB <call>" per callback,
// "INFOBAR ..." for a media record forwarded to it, "CONNECTED n" on each acknowledgement (n:
// connect-succeed log lines so far, also posted as 7777 with param1 n), "QUIT" on request.
class AppRoleApplication : public ChildApplication, private juce::Timer
{
public:
    void shutdown() override { m_api = nullptr; }

    void initialise(const juce::String&) override
    {
        int posts = 0, page = -1;
        std::string infoBar;
        for (auto& arg : sAppArgs)
        {
            posts = arg.rfind("posts=", 0) == 0 ? std::stoi(arg.substr(6)) : posts;
            page = arg.rfind("page=", 0) == 0 ? std::stoi(arg.substr(5)) : page;
            infoBar = arg.rfind("infobar=", 0) == 0 ? arg.substr(8) : infoBar;
        }
        m_api = std::make_unique<TestApi>((Pubhead::eAppType::EnumTypeTag)std::stoi(sAppArgs.at(0)), true);
        m_api->bindViewCallBack(&m_callBacks);
        m_api->bindAppCmdCallBack(&m_callBacks);
        m_callBacks.after = [](const std::string& call) { say("CB %s", call.c_str()); };
        m_api->onMessage = [this](const AppMessage::Ptr& m, bool handled) { onMessage(m, handled); };
        for (int i = 0; i < posts; ++i)
            m_api->postMessage(6000 + i, i, -i, nullptr);
        if (page >= 0)
            m_api->requestPageShow((Pubhead::eAppServiceType::EnumTypeTag)page);
        if (infoBar == "tuner")
        {
            auto tuner = InfoTuner::obtain();
            tuner->sourceID = 0;
            tuner->bandText = "FM";
            tuner->inforText = kInfoTitle;
            m_api->postMessage(ServiceCode::kInfoBar, ServiceCode::kInfoBarTuner, 0, tuner->enBundle());
        }
        if (infoBar == "media")
        {
            auto media = InfoMedia::obtain();
            media->sourceID = 7;
            media->curNum = 5;
            media->title = kInfoTitle;
            media->album = "Kind of Blue";
            m_api->postMessage(ServiceCode::kInfoBar, ServiceCode::kInfoBarMedia, 0, media->enBundle());
        }
        say("READY");
        startTimer(60000); // never outlive a test that went away
    }

private:
    void onMessage(const AppMessage::Ptr& m, bool handled)
    {
        const int code = m->intParameter1;
        say("GOT %d %d %d %s", code, m->intParameter2, m->intParameter3, handled ? "handled" : "unhandled");
        if (code == ServiceCode::kInfoBar && m->intParameter2 == ServiceCode::kInfoBarMedia)
        {
            auto media = InfoMedia::deBundle(Bundle::Ptr(dynamic_cast<Bundle*>(m->pointerParameter.get())));
            const bool intact = media->title == kInfoTitle && media->album == "Kind of Blue" && media->artist.isEmpty();
            say("INFOBAR media %d %d %d/%d %s", media->sourceID, media->playState, media->curNum, media->totalNum,
                intact ? "texts-intact" : "texts-DAMAGED");
        }
        if (code == ServiceCode::kConnectAck)
        {
            const int n = LogLines::count("I|applicationapi/MainServiceManager|126|MainServiceManager|"
                                          + std::string(appTypeName(m_api->getAppType())) + " connect succeed");
            say("CONNECTED %d", n);
            m_api->postMessage(7777, n, 0, nullptr);
        }
    }

    void timerCallback() override { quit(); }

    std::unique_ptr<TestApi> m_api;
    RecordingCallBacks m_callBacks;
};
} // namespace

LMCOM_CHILD_ROLE(app)
{
    sAppArgs = args;
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* { return new AppRoleApplication(); };
    const int status = juce::JUCEApplicationBase::main();
    MsgSession::purgeAll();
    return status;
}

} // namespace LmComTesting
