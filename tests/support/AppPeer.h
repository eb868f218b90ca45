#pragma once

#include "support/MessageLoop.h"
#include "support/TestSupport.h"

#include <LmCom.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

namespace LmComTesting
{

/** Records the notifications ("onPowerOff 31"); keeps the default power-off and quit. */
class RecordingResponse : public GeneralResponse
{
public:
    using GeneralResponse::GeneralResponse;
    void onGeneralNotify(int p1, int p2) override { record("onGeneralNotify", p1, p2); }
    void onPowerOff(int p1) override;
    void onStateChanged(bool state) override { record("onStateChanged", state); }
    void onGeneralCommand(int p1, int p2) override { record("onGeneralCommand", p1, p2); }
    void onGeneralEvent(int p1) override { record("onGeneralEvent", p1); }
    void onQuit(const AppMessage::Ptr& message) override;

    std::vector<std::string> calls;

private:
    void record(const char* name, int a, int b = INT_MIN);
};

/** A view and command handler that record each call: "show 3 1725", "pagehide 2 next=6
    extra=-" (extra: the "text" of the extra data). after() runs after each command. */
class RecordingCallBacks : public ViewCallBack, public AppCmdCallBack
{
public:
    void onViewShow(int p1, int code) override { record("show " + std::to_string(p1) + " " + std::to_string(code)); }
    void onViewHide(int p1, int code) override { record("hide " + std::to_string(p1) + " " + std::to_string(code)); }
    void onViewNotify(int p1, int code) override
    {
        record("notify " + std::to_string(p1) + " " + std::to_string(code));
    }
    void onSourceEnter(Pubhead::eAppServiceType::EnumTypeTag service, bool parking, bool frontShow,
                       const Bundle::Ptr& extra) override;
    void onSourceExit(Pubhead::eAppServiceType::EnumTypeTag service, Pubhead::eAppServiceType::EnumTypeTag next,
                      const Bundle::Ptr& extra) override;
    void onPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool parking, const Bundle::Ptr& extra) override;
    void onPageHide(Pubhead::eAppServiceType::EnumTypeTag service, Pubhead::eAppServiceType::EnumTypeTag next,
                    const Bundle::Ptr& extra) override;

    std::vector<std::string> calls;
    std::function<void(const std::string&)> after;

private:
    void record(const std::string& call);
};

/** An application API for tests: each incoming message goes to the general service, then is
    recorded with the result. The response is a RecordingResponse, installed unless told not. */
class TestApi : public AppServiceApi
{
public:
    TestApi(Pubhead::eAppType::EnumTypeTag type, bool initSession, bool installResponse = true);
    ~TestApi() override { setGeneralResponse(nullptr); }

    struct Received
    {
        AppMessage::Ptr message;
        bool handled;
    };
    std::vector<Received> received;
    std::function<void(const AppMessage::Ptr&, bool handled)> onMessage;

    int countReceived(int code) const;
    RecordingResponse& response() { return m_response; }
    void installResponse() { setGeneralResponse(&m_response); }
    using AppServiceApi::getGeneralResponse;
    using AppServiceApi::getGeneralService;
    using AppServiceApi::getMainServiceManager;

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    RecordingResponse m_response;
};

/** What the process playing the main service received, with the time of arrival. */
struct MainReceived
{
    int code, param1, param2, sender;
    Bundle::Ptr bundle;
    double timeMs;
};

/** A silent main service: records what arrives and answers nothing. */
class MainRecorder : public IMsgProc
{
public:
    void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg) override;
    void procUnknownMsg(int, int, int) override {}

    std::vector<MainReceived> seen;
    int count(int code) const;
    /** What arrived, without connect requests and heartbeat replies. */
    std::vector<MainReceived> requests() const;
};

/** The test process plays the main service (AppMain) on its private bus; an application API
    made in the same process opens its own endpoint beside it. */
class FrameworkTest : public LmComTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    /** Acknowledges the API's connection and waits until it was handled. */
    void acknowledge(TestApi& api);
    static void postToApp(int appType, int code, int param1, int param2, Parcelable* object = nullptr);
    bool waitFor(int code, int n, int timeoutMs = 10000);

    std::unique_ptr<MessageLoop> loop;
    MainRecorder main;
    std::unique_ptr<MsgSession> mainSession;
};

std::string textOf(const Bundle::Ptr& bundle);

} // namespace LmComTesting
