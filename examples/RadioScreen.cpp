// The radio application's screen on the model-view-controller framework. RadioApi's callbacks
// become notifications of the "radio" core: a station report from the main service (1175, a
// Bundle with "Band", "Frequency" and "Name") is stored by a command in the station proxy,
// which announces the change; the screen mediator shows it and puts it on the info bar (1184).
// Power-off and quit reach the screen the same way. It runs until the main service asks it to
// quit (or for a minute), printing one line per step. Try it beside the reference main service:
//   lmcom post Radio 1175 --string Band=FM --string Frequency="101.1 MHz" --string Name="Radio 1"
#include <LmCom.h>

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/RadioApi.h"

#include <cstdio>

namespace
{
const juce::String kCore = "radio";

// Notification names of the radio core.
constexpr int kStationReceived = 1; ///< body: the Bundle of the main service's report
constexpr int kStationChanged = 2;  ///< body: the Bundle now in the station proxy
constexpr int kPowerOff = 3;
constexpr int kQuit = 4;

// Proxy and mediator names.
constexpr int kStationProxy = 1;
constexpr int kScreenMediator = 1;

void say(const juce::String& text)
{
    std::printf("[radio] %s\n", text.toRawUTF8());
    std::fflush(stdout);
}

/** The station being played: the last report, as a Bundle. */
class StationProxy : public PureMVC::Proxy
{
public:
    StationProxy() : Proxy(kStationProxy) {}

    void setStation(const Bundle::Ptr& station)
    {
        setData(station);
        sendNotification(kStationChanged, station);
    }
    Bundle::Ptr getStation() const { return getDataAs<Bundle>(); }
};

/** Made fresh for each report: keeps it in the station proxy. */
class StoreStationCommand : public PureMVC::SimpleCommand
{
public:
    void execute(const PureMVC::Notification::Ptr& notification) override
    {
        auto station = notification->getBodyAs<Bundle>();
        auto facade = getFacade();
        if (station == nullptr || facade == nullptr)
            return;
        if (auto proxy = facade->retrieveProxy<StationProxy>(kStationProxy))
            proxy->setStation(station);
    }
};

/** The screen: shows the station and reports it to the info bar. */
class ScreenMediator : public PureMVC::Mediator
{
public:
    ScreenMediator() : Mediator(kScreenMediator) {}

    juce::Array<int> listNotificationInterests() const override { return {kStationChanged, kPowerOff, kQuit}; }

    void handleNotification(const PureMVC::Notification::Ptr& notification) override
    {
        switch (notification->getName())
        {
        case kStationChanged:
            showStation(*notification->getBodyAs<Bundle>());
            break;
        case kPowerOff:
            say("screen: power-off, the station is kept");
            break;
        case kQuit:
            say("screen: closing");
            break;
        default:
            break;
        }
    }
    void onRegister() override { say("screen: registered in core '" + getMultitonKey() + "'"); }
    void onRemove() override { say("screen: removed"); }

private:
    void showStation(Bundle& station)
    {
        auto tuner = InfoTuner::obtain();
        tuner->bandText = station.getString("Band", "FM");
        tuner->inforText = station.getString("Frequency", {});
        say("screen shows " + tuner->bandText + " " + tuner->inforText + " \"" + station.getString("Name", {})
            + "\"; info bar (1184)");
        RadioApi::getInstance()->sendToInfoBar(tuner);
    }
};

/** The radio core: its command is registered when the core is made. */
class RadioFacade : public PureMVC::Facade
{
public:
    using Facade::Facade;

protected:
    void initializeController() override
    {
        Facade::initializeController();
        registerCommand<StoreStationCommand>(kStationReceived);
    }
};

/** RadioApi's callbacks, turned into notifications of the radio core. */
class RadioCallBacks : public RadioCallBack
{
public:
    void onRadioMessage(const AppMessage::Ptr& message, int code) override
    {
        if (code == ApiCode::kRadio)
            send(kStationReceived, dynamic_cast<Bundle*>(message->pointerParameter.get()));
        else
            say("radio code " + juce::String(code) + " is not for the screen");
    }
    void onGeneralNotify(int, int) override {}
    void onPowerOff(int) override { send(kPowerOff); }
    void onGeneralCommand(int, int) override {}
    void onQuit(const AppMessage::Ptr&) override { send(kQuit); }

private:
    static void send(int name, PureMVC::Notification::Body body = nullptr)
    {
        if (auto core = PureMVC::Facade::findInstance(kCore))
            core->sendNotification(name, std::move(body));
    }
};

class RadioScreenApplication : public juce::JUCEApplicationBase, private juce::Timer
{
public:
    const juce::String getApplicationName() override { return "LmCom radio screen"; }
    const juce::String getApplicationVersion() override { return "1.0"; }
    bool moreThanOneInstanceAllowed() override { return true; }
    void anotherInstanceStarted(const juce::String&) override {}
    void suspended() override {}
    void resumed() override {}
    void unhandledException(const std::exception*, const juce::String&, int) override {}
    void systemRequestedQuit() override { quit(); }

    void initialise(const juce::String&) override
    {
        auto core = PureMVC::Facade::getInstance<RadioFacade>(kCore);
        core->registerProxy(new StationProxy());
        core->registerMediator(new ScreenMediator());

        auto* api = RadioApi::getInstance(); // opens the endpoint "Radio" and asks to connect
        if (api->getNativeHandle() == nullptr)
        {
            say("cannot open its endpoint (is another radio running?)");
            setApplicationReturnValue(1);
            quit();
            return;
        }
        api->bindCallBack(&m_callBacks);
        say("ready, waiting for the main service");
        startTimer(60000); // never outlive a head unit that went away without a word
    }

    void shutdown() override
    {
        stopTimer();
        RadioApi::getInstance()->bindCallBack(nullptr);
        PureMVC::Facade::removeCore(kCore);
        say("stopped");
    }

private:
    void timerCallback() override
    {
        say("no quit request within a minute; quitting");
        quit();
    }

    RadioCallBacks m_callBacks;
};
} // namespace

int main(int argc, char* argv[])
{
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase*
    { return new RadioScreenApplication(); };
    const int status = juce::JUCEApplicationBase::main(argc, const_cast<const char**>(argv));
    MsgSession::purgeAll();
    return status;
}
