// A small head-unit application for the simulated head unit (scripts/run-headunit.sh): the
// radio, the USB player, the main menu or the car information, by its first argument. It connects to the main
// service, asks for its page, reports to the info bar, answers the power-off request and quits
// when told to, printing one line per step.
#include <LmCom.h>

#include <cstdio>
#include <memory>

namespace
{
juce::String sName = "app";

void say(const juce::String& text)
{
    std::printf("[%s] %s\n", sName.toRawUTF8(), text.toRawUTF8());
    std::fflush(stdout);
}

/** What a role does at a given time after its connection. */
struct Role
{
    Pubhead::eAppType::EnumTypeTag type;
    Pubhead::eAppServiceType::EnumTypeTag page;
    int pageRequestAfterMs; // -1: at once, before the connection; otherwise after connecting
};

/** The application's API: AppServiceApi with the response of this application. */
class DemoApi : public AppServiceApi
{
public:
    class Response : public GeneralResponse
    {
    public:
        using GeneralResponse::GeneralResponse;

        void onPowerOff(int param1) override
        {
            say("power-off requested: saving state, then ready (1204)");
            GeneralResponse::onPowerOff(param1);
        }
        void onQuit(const AppMessage::Ptr& message) override
        {
            say("asked to quit (1199)");
            GeneralResponse::onQuit(message);
        }
    };

    std::function<void()> onConnected;

    explicit DemoApi(Pubhead::eAppType::EnumTypeTag type) : AppServiceApi(type, false), m_response(getGeneralService())
    {
        setGeneralResponse(&m_response);
    }

private:
    void remoteCallBack(const AppMessage::Ptr& message) override
    {
        const int code = message->intParameter1;
        if (code == ServiceCode::kInfoBar || code == ServiceCode::kGeneralToInfoBar)
        {
            showInfoBar(message);
            return;
        }
        if (!getGeneralService()->processMessage(message))
            say("code " + juce::String(code) + " is not handled here");
        if (code == ServiceCode::kConnectAck && !m_connected)
        {
            m_connected = true;
            say("connected to the main service; what waited is sent now");
            if (onConnected)
                onConnected();
        }
    }

    void showInfoBar(const AppMessage::Ptr& message)
    {
        Bundle::Ptr bundle(dynamic_cast<Bundle*>(message->pointerParameter.get()));
        if (message->intParameter1 == ServiceCode::kGeneralToInfoBar)
            say("info bar values " + juce::String(message->intParameter2) + ", "
                + juce::String(message->intParameter3));
        else if (message->intParameter2 == ServiceCode::kInfoBarTuner)
        {
            auto tuner = InfoTuner::deBundle(bundle);
            say("info bar shows the radio: " + tuner->bandText + " " + tuner->inforText);
        }
        else if (message->intParameter2 == ServiceCode::kInfoBarMedia)
        {
            auto media = InfoMedia::deBundle(bundle);
            say("info bar shows the player: track " + juce::String(media->curNum) + "/" + juce::String(media->totalNum)
                + " " + media->title + " - " + media->artist);
        }
        else
            say("info bar record of kind " + juce::String(message->intParameter2));
    }

    Response m_response;
    bool m_connected = false;
};

/** The car information's callback: prints the values decoded from each frame of the host
    controller on one line (a frame's values arrive together, so they are printed after it). */
class CarInfoPrinter : public CarInfoCallBack, private juce::AsyncUpdater
{
public:
    ~CarInfoPrinter() override { cancelPendingUpdate(); }

    void onGeneralCommand(int param1, int param2) override
    {
        say("general command (1322) " + juce::String(param1) + ", " + juce::String(param2));
    }
    void onCarInfoValue(int item, int value) override
    {
        m_values << " " << item << "=" << value;
        triggerAsyncUpdate();
    }

private:
    void handleAsyncUpdate() override
    {
        say("decoded (item=value):" + m_values);
        m_values.clear();
    }

    juce::String m_values;
};

/** The application itself: its view and command handler, and a few timed steps. */
class DemoApplication : public juce::JUCEApplicationBase,
                        public ViewCallBack,
                        public AppCmdCallBack,
                        private juce::Timer
{
public:
    const juce::String getApplicationName() override { return "LmCom demo application"; }
    const juce::String getApplicationVersion() override { return "1.0"; }
    bool moreThanOneInstanceAllowed() override { return true; }
    void anotherInstanceStarted(const juce::String&) override {}
    void suspended() override {}
    void resumed() override {}
    void unhandledException(const std::exception*, const juce::String&, int) override {}

    void initialise(const juce::String& commandLine) override
    {
        const auto role = commandLine.trim();
        if (role == "radio")
            m_role = {Pubhead::eAppType::AppRadio, Pubhead::eAppServiceType::SrvRadio, -1};
        else if (role == "usb")
            m_role = {Pubhead::eAppType::AppUSB, Pubhead::eAppServiceType::SrvUSB, 2500};
        else if (role == "mainmenu")
            m_role = {Pubhead::eAppType::AppMainMenu, Pubhead::eAppServiceType::SrvMainMenu, -2};
        else if (role == "carinfo")
        {
            sName = role;
            startCarInfo();
            return;
        }
        else
        {
            std::fprintf(stderr, "usage: DemoApp radio|usb|mainmenu|carinfo\n");
            setApplicationReturnValue(2);
            quit();
            return;
        }
        sName = role;

        m_api = std::make_unique<DemoApi>(m_role.type);
        m_api->bindViewCallBack(this);
        m_api->bindAppCmdCallBack(this);
        m_api->onConnected = [this] { m_connectedAt = juce::Time::getMillisecondCounter(); };
        m_api->initMsgSession();
        if (m_api->getNativeHandle() == nullptr)
        {
            say("cannot open its endpoint (is another one running?)");
            setApplicationReturnValue(1);
            quit();
            return;
        }
        say("started as " + juce::String(appTypeName(m_role.type)) + ", asking the main service to connect (1745)");
        if (m_role.pageRequestAfterMs == -1)
        {
            say("asks for its page and reports its station; both wait until connected");
            m_api->requestPageShow(m_role.page);
            sendStation("101.1 MHz");
        }
        m_startedAt = juce::Time::getMillisecondCounter();
        startTimer(100);
    }

    void shutdown() override
    {
        stopTimer();
        m_api = nullptr;
        m_carInfo = nullptr;
        say("stopped");
    }

    void systemRequestedQuit() override { quit(); }

    // ViewCallBack
    void onViewShow(int param1, int code) override
    {
        say("view show " + juce::String(param1) + " (" + juce::String(code) + ")");
    }
    void onViewHide(int param1, int code) override
    {
        say("view hide " + juce::String(param1) + " (" + juce::String(code) + ")");
    }
    void onViewNotify(int param1, int code) override
    {
        say("view notify " + juce::String(param1) + " (" + juce::String(code) + ")");
    }

    // AppCmdCallBack
    void onSourceEnter(Pubhead::eAppServiceType::EnumTypeTag service, bool, bool, const Bundle::Ptr&) override
    {
        say("source enter " + juce::String(service));
    }
    void onSourceExit(Pubhead::eAppServiceType::EnumTypeTag service, Pubhead::eAppServiceType::EnumTypeTag,
                      const Bundle::Ptr&) override
    {
        say("source exit " + juce::String(service));
    }
    void onPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool, const Bundle::Ptr&) override
    {
        say("command line: show page " + juce::String(service) + "; page ready (1728)");
        if (m_api != nullptr)
            m_api->onPageShowReady(service);
        m_shownAt = juce::Time::getMillisecondCounter();
        if (m_role.type == Pubhead::eAppType::AppUSB)
            sendTrack(1);
    }
    void onPageHide(Pubhead::eAppServiceType::EnumTypeTag service, Pubhead::eAppServiceType::EnumTypeTag next,
                    const Bundle::Ptr&) override
    {
        say("command line: hide page " + juce::String(service) + " for page " + juce::String(next)
            + "; hiding done (1729), hidden (1730)");
        if (m_api != nullptr)
            m_api->onPageHidingReady(service);
    }

private:
    void startCarInfo()
    {
        m_role = {Pubhead::eAppType::AppCarInfo, Pubhead::eAppServiceType::SrvCarInfo, -2};
        m_carInfo = std::make_unique<CarInfoApi>(this, this);
        m_carInfo->bindCallBack(&m_carInfoPrinter);
        if (m_carInfo->getNativeHandle() == nullptr)
        {
            say("cannot open its endpoint (is another one running?)");
            setApplicationReturnValue(1);
            quit();
            return;
        }
        say("started as AppCarInfo; asks for the meter readings and the wheel data (74), sent once connected");
        m_carInfo->GetRVMeter();
        m_carInfo->GetAllWheelData();
        m_startedAt = juce::Time::getMillisecondCounter();
        startTimer(100);
    }

    void timerCallback() override
    {
        const auto now = juce::Time::getMillisecondCounter();
        // Never outlive a head unit that went away without a word.
        if (now - m_startedAt > 60000)
        {
            say("no quit request within a minute; quitting");
            quit();
            return;
        }
        if (m_connectedAt == 0)
            return;
        if (m_role.pageRequestAfterMs >= 0 && !m_pageRequested
            && now - m_connectedAt >= (juce::uint32)m_role.pageRequestAfterMs)
        {
            m_pageRequested = true;
            say("asks for its page (1724)");
            m_api->requestPageShow(m_role.page);
        }
        if (m_role.type == Pubhead::eAppType::AppRadio && !m_stationChanged && m_shownAt != 0
            && now - m_shownAt >= 2000)
        {
            m_stationChanged = true;
            sendStation("102.5 MHz");
        }
    }

    void sendStation(const juce::String& frequency)
    {
        auto tuner = InfoTuner::obtain();
        tuner->sourceID = 0;
        tuner->bandText = "FM";
        tuner->inforText = frequency;
        say("info bar: FM " + frequency + " (1184)");
        m_api->postMessage(ServiceCode::kInfoBar, ServiceCode::kInfoBarTuner, 0, tuner->enBundle());
    }

    void sendTrack(int track)
    {
        auto media = InfoMedia::obtain();
        media->sourceID = 7;
        media->playState = 1;
        media->curNum = track;
        media->totalNum = 12;
        media->title = "Blue in Green";
        media->artist = "Miles Davis";
        say("info bar: track " + juce::String(track) + " (1184)");
        m_api->postMessage(ServiceCode::kInfoBar, ServiceCode::kInfoBarMedia, 0, media->enBundle());
    }

    Role m_role{};
    std::unique_ptr<DemoApi> m_api;
    std::unique_ptr<CarInfoApi> m_carInfo;
    CarInfoPrinter m_carInfoPrinter;
    juce::uint32 m_startedAt = 0;
    juce::uint32 m_connectedAt = 0;
    juce::uint32 m_shownAt = 0;
    bool m_pageRequested = false;
    bool m_stationChanged = false;
};
} // namespace

int main(int argc, char* argv[])
{
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* { return new DemoApplication(); };
    const int status = juce::JUCEApplicationBase::main(argc, const_cast<const char**>(argv));
    MsgSession::purgeAll();
    return status;
}
