// A head-unit application in its usual shape: a JUCEApplicationBase, whose main runs JUCE's
// dispatch loop. The API object is made in initialise (the message thread exists by then) and
// destroyed in shutdown. Nothing else is needed to quit on the main service's request: the
// default answer to 1199 asks the running application to quit.
//
// It connects as the radio, asks for its page, confirms each page show and hide, and answers
// the power-off request (the default answer, 1204). Run it beside tools/mainservice/MainService.
#include <LmCom.h>

#include <cstdio>
#include <memory>

namespace
{
void say(const char* text, int value)
{
    std::printf("[juceapp] %s %d\n", text, value);
    std::fflush(stdout);
}

/** The application's API: every incoming message of the process arrives in remoteCallBack. */
class RadioApi : public AppServiceApi
{
public:
    RadioApi() : AppServiceApi(Pubhead::eAppType::AppRadio, true), m_response(getGeneralService())
    {
        setGeneralResponse(&m_response); // power-off answered at once, quit on request
    }

private:
    void remoteCallBack(const AppMessage::Ptr& message) override
    {
        if (message->intParameter1 == ServiceCode::kConnectAck)
            say("connected", message->intParameter1);
        // This application has no codes of its own: everything goes to the common dispatch.
        getGeneralService()->processMessage(message);
    }

    GeneralResponse m_response;
};

class RadioApplication : public juce::JUCEApplicationBase, private ViewCallBack, private AppCmdCallBack
{
public:
    const juce::String getApplicationName() override { return "LmCom JUCE application example"; }
    const juce::String getApplicationVersion() override { return "1.0"; }
    bool moreThanOneInstanceAllowed() override { return true; }
    void anotherInstanceStarted(const juce::String&) override {}
    void suspended() override {}
    void resumed() override {}
    void unhandledException(const std::exception*, const juce::String&, int) override {}
    void systemRequestedQuit() override { quit(); }

    void initialise(const juce::String&) override
    {
        m_api = std::make_unique<RadioApi>();
        if (m_api->getNativeHandle() == nullptr) // another radio holds the endpoint
        {
            setApplicationReturnValue(1);
            quit();
            return;
        }
        m_api->bindViewCallBack(this);
        m_api->bindAppCmdCallBack(this);
        m_api->requestPageShow(Pubhead::eAppServiceType::SrvRadio); // waits until connected
        say("started, page requested", Pubhead::eAppServiceType::SrvRadio);
    }

    void shutdown() override
    {
        m_api = nullptr; // closes the endpoint
        say("stopped", 0);
    }

private:
    // param1 is the page concerned; code is 1725, 1726 or 1727.
    void onViewShow(int param1, int) override { say("view show (1725)", param1); }
    void onViewHide(int param1, int) override { say("view hide (1726)", param1); }
    void onViewNotify(int param1, int) override { say("view notify (1727)", param1); }

    void onSourceEnter(Pubhead::eAppServiceType::EnumTypeTag service, bool, bool, const Bundle::Ptr&) override
    {
        say("source enter", service);
    }
    void onSourceExit(Pubhead::eAppServiceType::EnumTypeTag service, Pubhead::eAppServiceType::EnumTypeTag,
                      const Bundle::Ptr&) override
    {
        say("source exit", service);
    }
    void onPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool, const Bundle::Ptr&) override
    {
        say("page shown, ready (1728)", service);
        m_api->onPageShowReady(service);
    }
    void onPageHide(Pubhead::eAppServiceType::EnumTypeTag service, Pubhead::eAppServiceType::EnumTypeTag,
                    const Bundle::Ptr&) override
    {
        // The framework reports the hide (1730) after this returns.
        say("page hidden, done (1729)", service);
        m_api->onPageHidingReady(service);
    }

    std::unique_ptr<RadioApi> m_api;
};
} // namespace

START_JUCE_APPLICATION(RadioApplication)
