#include "ReferenceMainService.h"

#include "Platform/Endpoint.h"
#include "Platform/Environment.h"
#include "Utils/SystemHelper.h"
#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiMessageHelper.h"

#include <cstdio>

namespace
{
constexpr int kTickMs = 25;

const char* const kServiceNames[] = {
    "SrvRadio",      "SrvHDRadio",  "SrvRadio2",   "SrvHDRadio2",  "SrvDisc",   "SrvDisc2",      "SrvUSB",
    "SrvUSB2",       "SrvUSB3",     "SrvUSB4",     "SrviPod",      "SrviPod2",  "SrvPandora",    "SrvBluetooth",
    "SrvBluetooth2", "SrvAuxIn",    "SrvAuxIn2",   "SrvCamera",    "SrvSirius", "SrvNavi",       "SrvDVBT",
    "SrvHDMI",       "SrvMainMenu", "SrvSetup",    "SrvAuxIn3",    "SrvAuxIn4", "SrvDisc3",      "SrvDVBT2",
    "SrviPod3",      "SrvNone29",   "SrvStandby",  "SrvAntitheft", "SrvEQ",     "SrvDisc4",      "SrvStandby2",
    "SrvRadar",      "SrvCarInfo",  "SrvCarInfo2", "SrvCarInfo3",  "SrvWifi",   "SrvTelematics", "SrvNone41",
    "SrvDAB",        "SrvAC",       "SrvSWC",      "SrvUSB5",      "SrvUSB6",   "SrvUSB7",       "SrvUSB8",
    "SrvUSB9",       "SrvUSB10",    "SrvUSB11",    "SrvRadio3",    "SrvRadio4", "SrvRadio5"};

juce::String serviceName(int service)
{
    const int count = (int)(sizeof kServiceNames / sizeof kServiceNames[0]);
    return juce::String(service) + " "
           + (service >= 0 && service < count ? juce::String(kServiceNames[service]) : juce::String("(unknown)"));
}

juce::String appName(int type)
{
    const juce::String name = appTypeName(type);
    return name.isNotEmpty() ? name : "app " + juce::String(type);
}

bool isApplication(int type)
{
    return type > Pubhead::eAppType::AppMain && type < Pubhead::eAppType::AppUnknown
           && type != Pubhead::eAppType::AppNavi;
}

// From the bus folder, not from Endpoint::exists: a connection this process made earlier
// keeps a departed endpoint looking present until a send to it fails.
bool endpointAlive(int type)
{
    const juce::String name = getDestName(type);
    for (const auto& endpoint : Platform::Endpoint::list())
        if (endpoint.name == name)
            return endpoint.alive;
    return false;
}

juce::int64 now()
{
    return (juce::int64)juce::Time::getMillisecondCounterHiRes();
}

juce::String quoted(const juce::String& text)
{
    return "'" + text + "'";
}

juce::String describeInfoBar(int kind, const Bundle::Ptr& bundle)
{
    switch (kind)
    {
    case ServiceCode::kInfoBarTuner:
    {
        auto r = InfoTuner::deBundle(bundle);
        return "tuner source " + juce::String(r->sourceID) + " band " + quoted(r->bandText) + " text "
               + quoted(r->inforText) + " action " + juce::String(r->action);
    }
    case ServiceCode::kInfoBarSatRadio:
    {
        auto r = InfoSatRadio::deBundle(bundle);
        return "satellite radio source " + juce::String(r->sourceID) + " channel " + quoted(r->channelName) + " artist "
               + quoted(r->artist) + " title " + quoted(r->title);
    }
    case ServiceCode::kInfoBarMedia:
    {
        auto r = InfoMedia::deBundle(bundle);
        return "media source " + juce::String(r->sourceID) + " state " + juce::String(r->playState) + " track "
               + juce::String(r->curNum) + "/" + juce::String(r->totalNum) + " title " + quoted(r->title) + " artist "
               + quoted(r->artist);
    }
    case ServiceCode::kInfoBarBT:
    {
        auto r = InfoBT::deBundle(bundle);
        return "phone source " + juce::String(r->sourceID) + " text " + quoted(r->inforText) + " action "
               + juce::String(r->action);
    }
    default:
        return "record of unknown kind " + juce::String(kind);
    }
}
// The plain window messages that applications send with SystemHelper, by name.
juce::String describeWindowMessage(int msg, int wParam, int lParam)
{
    static const char* const commands[] = {nullptr,
                                           "TA cancel",
                                           "front/rear switch",
                                           "guide",
                                           "show menu",
                                           "show Bluetooth",
                                           "show maintenance",
                                           "show TPMS",
                                           "show telematics info",
                                           "show telematics inbox",
                                           "enter standby",
                                           "show current source"};
    static const char* const marineKeys[] = {"marine rotary next",
                                             "marine rotary previous",
                                             "marine rotary enter",
                                             "marine show menu",
                                             "marine back",
                                             "mute",
                                             "marine show zone 2 volume"};
    const juce::String numbers(msg);
    switch (msg)
    {
    case SystemHelper::kBeepMessage:
        return numbers + ": beep";
    case SystemHelper::kShowEQMessage:
        return numbers + ": show EQ";
    case SystemHelper::kHideEQMessage:
        return numbers + ": hide EQ";
    case SystemHelper::kSystemCommandMessage:
        if (wParam == SystemHelper::kMarineKey)
            return numbers + " " + juce::String(wParam) + " " + juce::String(lParam) + ": "
                   + (lParam >= 0 && lParam < (int)std::size(marineKeys) ? marineKeys[lParam] : "unknown marine key");
        return numbers + " " + juce::String(wParam) + ": "
               + (wParam > 0 && wParam < (int)std::size(commands) ? commands[wParam] : "unknown system command");
    default:
        return numbers + " (" + juce::String(wParam) + ", " + juce::String(lParam) + ")";
    }
}
} // namespace

void mainSay(const juce::String& text)
{
    std::printf("[main] %s\n", text.toRawUTF8());
    std::fflush(stdout);
}

ReferenceMainService::ReferenceMainService(const Options& options) : m_options(options) {}

ReferenceMainService::~ReferenceMainService()
{
    stopTimer();
}

bool ReferenceMainService::start()
{
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppMain, getDestName);
    if (!m_session.init(this))
    {
        mainSay("cannot open the endpoint " + quoted(getDestName(Pubhead::eAppType::AppMain))
                + ": another main service runs on this bus");
        return false;
    }
    const auto bus = Platform::Environment::busName();
    mainSay("up as " + quoted(getDestName(Pubhead::eAppType::AppMain)) + " on bus "
            + quoted(bus.isEmpty() ? juce::String("default") : bus) + ", heartbeat every "
            + juce::String(m_options.heartbeatMs) + " ms");

    // Applications that started before us wait for an answer: ask them to connect now.
    for (int type = Pubhead::eAppType::AppMainMenu; type < Pubhead::eAppType::AppUnknown; ++type)
    {
        if (isApplication(type) && endpointAlive(type) && post(type, ServiceCode::kPleaseConnect, 0, 0))
            mainSay("-> " + appName(type) + ": please connect (1744)");
    }

    m_startedAt = m_lastHeartbeatAt = now();
    startTimer(kTickMs);
    return true;
}

void ReferenceMainService::stop()
{
    if (m_phase != Phase::running)
        return;
    m_phase = Phase::poweringOff;
    m_phaseDeadline = now() + m_options.shutdownWaitMs;
    juce::StringArray sent;
    for (auto& [type, app] : m_apps)
    {
        if (!app.connected)
            continue;
        app.powerOffReady = false;
        // param1 is echoed by the answer: it tells whose answer it is.
        if (post(type, ServiceCode::kPowerOff, type, 0))
            sent.add(appName(type));
        else
            app.powerOffReady = true; // gone: nothing to wait for
    }
    mainSay("powering off (1203) -> " + (sent.isEmpty() ? juce::String("nobody") : sent.joinIntoString(", ")));
    progressShutdown();
}

void ReferenceMainService::timerCallback()
{
    const auto t = now();
    if (m_phase == Phase::running)
    {
        if (m_options.runMs > 0 && t - m_startedAt >= m_options.runMs)
        {
            stop();
            return;
        }
        playCarInfoFrames();
        if (t - m_lastHeartbeatAt >= m_options.heartbeatMs)
        {
            m_lastHeartbeatAt = t;
            heartbeatRound();
        }
        return;
    }
    progressShutdown();
}

void ReferenceMainService::heartbeatRound()
{
    juce::StringArray sent;
    ++m_heartbeatRound;
    for (auto& [type, app] : m_apps)
    {
        if (!app.connected)
            continue;
        if (app.unanswered >= m_options.missedLimit && !app.silent)
        {
            app.silent = true;
            if (!endpointAlive(type))
            {
                // Its process is gone: forget the connection; a new one connects again.
                app.connected = false;
                mainSay(appName(type) + ": stopped answering heartbeats (" + juce::String(app.unanswered)
                        + " missed), its endpoint is gone");
                continue;
            }
            mainSay(appName(type) + ": stopped answering heartbeats (" + juce::String(app.unanswered)
                    + " missed), still alive");
        }
        ++app.unanswered;
        if (post(type, ServiceCode::kHeartbeat, 0, 0))
            sent.add(appName(type));
    }
    if (!sent.isEmpty())
        mainSay("heartbeat " + juce::String(m_heartbeatRound) + " (1747) -> " + sent.joinIntoString(", "));
}

void ReferenceMainService::progressShutdown()
{
    if (m_phase == Phase::poweringOff)
    {
        bool allReady = true;
        for (auto& [type, app] : m_apps)
            allReady = allReady && (!app.connected || app.powerOffReady);
        if (!allReady && now() < m_phaseDeadline)
            return;
        if (!allReady)
            mainSay("not every application answered the power-off request");
        m_phase = Phase::quitting;
        m_phaseDeadline = now() + m_options.shutdownWaitMs;
        for (auto& [type, app] : m_apps)
            if (app.connected && post(type, ServiceCode::kQuit, 0, 0))
                mainSay("-> " + appName(type) + ": quit (1199)");
        return;
    }
    if (m_phase == Phase::quitting)
    {
        bool anyAlive = false;
        for (auto& [type, app] : m_apps)
            anyAlive = anyAlive || (app.connected && endpointAlive(type));
        if (anyAlive && now() < m_phaseDeadline)
            return;
        mainSay(anyAlive ? "some applications are still running; stopping anyway" : "every application has quit");
        finish();
    }
}

void ReferenceMainService::finish()
{
    m_phase = Phase::finished;
    stopTimer();
    mainSay("done");
    juce::MessageManager::getInstance()->stopDispatchLoop();
}

bool ReferenceMainService::post(int dest, int code, int param1, int param2, Parcelable* object)
{
    return IPCMsg::MessageHelper::postMessage(dest, code, param1, param2, object);
}

juce::String ReferenceMainService::connectedNames() const
{
    juce::StringArray names;
    for (auto& [type, app] : m_apps)
        if (app.connected)
            names.add(appName(type));
    return names.joinIntoString(", ");
}

void ReferenceMainService::procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& message)
{
    const int sender = message->sender;
    const int p1 = message->param1;
    const int p2 = message->param2;
    if (!isApplication(sender))
    {
        mainSay("code " + juce::String(message->code) + " from an unknown sender " + juce::String(sender) + " ignored");
        return;
    }
    const auto from = appName(sender) + ": ";
    switch (message->code)
    {
    case ServiceCode::kConnectRequest:
        onConnectRequest(sender);
        break;
    case ServiceCode::kHeartbeatReply:
        onHeartbeatReply(sender);
        break;
    case ServiceCode::kRequestPageShow:
        onRequestPageShow(sender, p1);
        break;
    case ServiceCode::kPageShowReady:
        mainSay(from + "page " + serviceName(p1) + " is shown (1728)");
        break;
    case ServiceCode::kPageHidingReady:
        mainSay(from + "page " + serviceName(p1) + " finished hiding (1729)");
        break;
    case ServiceCode::kPageHidden:
        mainSay(from + "page " + serviceName(p1) + " hidden by command line (1730)");
        break;
    case ServiceCode::kPowerOffReady:
        if (m_apps.count(sender) != 0)
            m_apps[sender].powerOffReady = true;
        mainSay(from + "power-off ready (1204) with " + juce::String(p1));
        break;
    case ServiceCode::kSystemBeep:
        mainSay(from + "beep (1137) with " + juce::String(p1));
        break;
    case ServiceCode::kInfoBar:
        onInfoBar(sender, p1, p2, message->object.get());
        break;
    case ServiceCode::kGeneralToInfoBar:
        onGeneralToInfoBar(sender, p1, p2);
        break;
    case ServiceCode::kSetting:
        onSetting(sender, p1, p2, message->object.get());
        break;
    case ApiCode::kCarData:
        onCarInfoFrame(sender, message->object.get());
        break;
    default:
        mainSay(from + "code " + juce::String(message->code) + " (" + juce::String(p1) + ", " + juce::String(p2) + ")");
        break;
    }
}

void ReferenceMainService::procUnknownMsg(int msg, int wParam, int lParam)
{
    if (msg == MsgSession::kMsgWindowMessage || msg == MsgSession::kBroadcastWindowMessage)
    {
        mainSay("a message that fails its checks: " + juce::String(msg) + " " + juce::String(wParam) + " "
                + juce::String(lParam));
        return;
    }
    mainSay("window message " + describeWindowMessage(msg, wParam, lParam));
}

void ReferenceMainService::onConnectRequest(int sender)
{
    auto& app = m_apps[sender];
    const bool wasConnected = app.connected;
    app.connected = true;
    app.silent = false;
    app.unanswered = 0;
    post(sender, ServiceCode::kConnectAck, 0, 0);
    // A request that crossed our acknowledgement is answered again, quietly.
    if (!wasConnected)
        mainSay(appName(sender) + ": connect request (1745) -> acknowledged (1746); connected: " + connectedNames());
    if (m_phase != Phase::running)
        post(sender, ServiceCode::kQuit, 0, 0);
    if (sender == Pubhead::eAppType::AppCarInfo && !m_options.carInfoFrames.empty() && m_nextCarInfoFrame == 0
        && m_nextCarInfoFrameAt < 0)
    {
        mainSay("playing " + juce::String((int)m_options.carInfoFrames.size()) + " car information frames to "
                + appName(sender));
        m_nextCarInfoFrameAt = now() + m_options.carInfoFrames[0].waitMs;
    }
}

void ReferenceMainService::onHeartbeatReply(int sender)
{
    auto& app = m_apps[sender];
    if (app.silent)
        mainSay(appName(sender) + ": answers heartbeats again");
    // An application never drops its connection: one that answers is connected.
    app.connected = true;
    app.silent = false;
    app.unanswered = 0;
    mainSay(appName(sender) + ": heartbeat answered (1748)");
}

void ReferenceMainService::onRequestPageShow(int sender, int service)
{
    mainSay(appName(sender) + ": asks to show page " + serviceName(service) + " (1724)");
    if (m_page.owner >= 0 && (m_page.owner != sender || m_page.service != service))
    {
        const auto hide = AppCommandLine::genCmdPageHide((Pubhead::eAppServiceType::EnumTypeTag)m_page.service,
                                                         (Pubhead::eAppServiceType::EnumTypeTag)service);
        post(m_page.owner, ServiceCode::kViewHide, m_page.service, 0);
        post(m_page.owner, ServiceCode::kCommandInfo, 0, 0, RemoteObjFormat::formatCommandLine(hide).get());
        mainSay("-> " + appName(m_page.owner) + ": hide page " + serviceName(m_page.service) + ", next "
                + serviceName(service) + " (1726, 1754)");
    }
    const auto show = AppCommandLine::genCmdPageShow((Pubhead::eAppServiceType::EnumTypeTag)service, false);
    post(sender, ServiceCode::kCommandInfo, 0, 0, RemoteObjFormat::formatCommandLine(show).get());
    post(sender, ServiceCode::kViewShow, service, 0);
    mainSay("-> " + appName(sender) + ": show page " + serviceName(service) + " (1754, 1725)");
    m_page = {service, sender};
}

void ReferenceMainService::onInfoBar(int sender, int kind, int param2, Parcelable* object)
{
    Bundle::Ptr bundle(dynamic_cast<Bundle*>(object));
    auto line = appName(sender) + ": info bar (1184) " + describeInfoBar(kind, bundle);
    const int mainMenu = Pubhead::eAppType::AppMainMenu;
    if (sender != mainMenu && bundle != nullptr && m_apps[mainMenu].connected)
    {
        // A copy travels on: sending recycles what it sends.
        auto copy = bundle->clone();
        if (post(mainMenu, ServiceCode::kInfoBar, kind, param2, copy.get()))
            line << " -> " << appName(mainMenu);
    }
    mainSay(line);
}

void ReferenceMainService::onGeneralToInfoBar(int sender, int param1, int param2)
{
    auto line = appName(sender) + ": info bar values (2248) " + juce::String(param1) + ", " + juce::String(param2);
    const int mainMenu = Pubhead::eAppType::AppMainMenu;
    if (sender != mainMenu && m_apps[mainMenu].connected
        && post(mainMenu, ServiceCode::kGeneralToInfoBar, param1, param2))
        line << " -> " << appName(mainMenu);
    mainSay(line);
}

void ReferenceMainService::onSetting(int sender, int id, int type, Parcelable* object)
{
    Bundle::Ptr value(dynamic_cast<Bundle*>(object));
    juce::String text;
    if (type == ServiceCode::kSettingInt)
        text = juce::String(RemoteObjFormat::getInt(value));
    else if (type == ServiceCode::kSettingString)
        text = quoted(RemoteObjFormat::getString(value));
    else
        text = "of unknown type " + juce::String(type);
    mainSay(appName(sender) + ": setting " + juce::String(id) + " = " + text + " (1765)");
}

void ReferenceMainService::onCarInfoFrame(int sender, Parcelable* object)
{
    auto* bundle = dynamic_cast<Bundle*>(object);
    auto* frame = bundle != nullptr ? bundle->getByteArray(ApiMessageHelper::KEY_DATA) : nullptr;
    if (frame == nullptr)
    {
        mainSay(appName(sender) + ": code 74 without frame bytes");
        return;
    }
    mainSay(appName(sender) + ": frame to the host controller (74) "
            + juce::String::toHexString(frame->getData(), (int)juce::jmin(frame->getSize(), (size_t)64)).toUpperCase()
            + (frame->getSize() > 64 ? " ..." : ""));
}

void ReferenceMainService::playCarInfoFrames()
{
    const auto& frames = m_options.carInfoFrames;
    while (m_nextCarInfoFrameAt >= 0 && now() >= m_nextCarInfoFrameAt)
    {
        const auto& entry = frames[m_nextCarInfoFrame];
        const int carInfo = Pubhead::eAppType::AppCarInfo;
        auto bundle = Bundle::obtain();
        bundle->putByteArray(ApiMessageHelper::KEY_DATA, juce::MemoryBlock(entry.frame.data(), entry.frame.size()));
        const bool sent = post(carInfo, ApiCode::kCarData, 0, 0, bundle.get());
        mainSay(juce::String(sent ? "-> " : "cannot send to ") + appName(carInfo) + ": answer frame (74) "
                + juce::String::toHexString(entry.frame.data(), (int)entry.frame.size()).toUpperCase() + " (line "
                + juce::String(entry.line) + ")");
        if (++m_nextCarInfoFrame == frames.size())
        {
            m_nextCarInfoFrameAt = -1;
            mainSay("car information frames played");
            return;
        }
        m_nextCarInfoFrameAt = now() + frames[m_nextCarInfoFrame].waitMs;
    }
}
