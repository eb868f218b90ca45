// A head-unit application as a plain console program: main makes JUCE's message thread itself
// (ScopedJuceInitialiser_GUI) and runs the dispatch loop, which delivers everything the main
// service sends. Without a JUCEApplicationBase nobody answers the default quit request, so the
// response stops the loop itself on 1199.
//
// It connects as the auxiliary input, asks for its page, confirms the page show and answers
// the power-off request. Run it beside tools/mainservice/MainService.
#include <LmCom.h>

#include <cstdio>

namespace
{
void say(const char* text, int value)
{
    std::printf("[consoleapp] %s %d\n", text, value);
    std::fflush(stdout);
}

class AuxInApp : public AppServiceApi, private ViewCallBack, private AppCmdCallBack
{
public:
    AuxInApp() : AppServiceApi(Pubhead::eAppType::AppAuxIn, true), m_response(getGeneralService())
    {
        setGeneralResponse(&m_response);
        bindViewCallBack(this); // after setGeneralResponse: the response holds it
        bindAppCmdCallBack(this);
    }

private:
    class Response : public GeneralResponse
    {
    public:
        using GeneralResponse::GeneralResponse;

        void onPowerOff(int param1) override
        {
            say("power-off, ready (1204)", param1);
            GeneralResponse::onPowerOff(param1); // answers 1204 with the same param1
        }
        void onQuit(const AppMessage::Ptr&) override
        {
            say("quit (1199)", 0);
            juce::MessageManager::getInstance()->stopDispatchLoop();
        }
    };

    void remoteCallBack(const AppMessage::Ptr& message) override
    {
        if (message->intParameter1 == ServiceCode::kConnectAck)
            say("connected", message->intParameter1);
        getGeneralService()->processMessage(message);
    }

    // param1 is the page concerned.
    void onViewShow(int param1, int) override { say("view show (1725)", param1); }
    void onViewHide(int param1, int) override { say("view hide (1726)", param1); }
    void onViewNotify(int param1, int) override { say("view notify (1727)", param1); }

    void onSourceEnter(Pubhead::eAppServiceType::EnumTypeTag, bool, bool, const Bundle::Ptr&) override {}
    void onSourceExit(Pubhead::eAppServiceType::EnumTypeTag, Pubhead::eAppServiceType::EnumTypeTag,
                      const Bundle::Ptr&) override
    {
    }
    void onPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool, const Bundle::Ptr&) override
    {
        say("page shown, ready (1728)", service);
        onPageShowReady(service);
    }
    void onPageHide(Pubhead::eAppServiceType::EnumTypeTag service, Pubhead::eAppServiceType::EnumTypeTag,
                    const Bundle::Ptr&) override
    {
        say("page hidden, done (1729)", service);
        onPageHidingReady(service);
    }

    Response m_response;
};
} // namespace

int main()
{
    juce::ScopedJuceInitialiser_GUI juce; // this thread becomes JUCE's message thread
    int status = 0;
    {
        AuxInApp api;
        if (api.getNativeHandle() == nullptr) // another auxiliary input holds the endpoint
            status = 1;
        else
        {
            api.requestPageShow(Pubhead::eAppServiceType::SrvAuxIn); // waits until connected
            say("started, page requested", Pubhead::eAppServiceType::SrvAuxIn);
            // Messages are delivered only while the loop runs; it returns on stopDispatchLoop.
            juce::MessageManager::getInstance()->runDispatchLoop();
        }
    }
    MsgSession::purgeAll();
    say("stopped", status);
    return status;
}
