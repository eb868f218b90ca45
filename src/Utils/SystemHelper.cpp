#include "Utils/SystemHelper.h"

#include "LogBridge.h"
#include "Message/MessageHelper.h"
#include "Platform/Endpoint.h"
#include "Pubhead.h"

#include <mutex>

namespace
{
const char* const kLogSource = "Utils/SystemHelper_win32";
const char* const kLogTag = "SystemHelper";

// The log lines of the marine keys: readers match on these texts and lines.
constexpr int kLineRotaryNext = 98;
constexpr int kLineRotaryPre = 104;
constexpr int kLineRotaryEnter = 110;
constexpr int kLineShowMenu = 116;
constexpr int kLineBack = 122;
constexpr int kLineMute = 129;
constexpr int kLineZone2Volume = 134;

/** The main service's endpoint as last found (the cached window handle); "" when none was. */
struct MainWindow
{
    std::mutex lock;
    juce::String name;
};

MainWindow& mainWindow()
{
    static MainWindow window;
    return window;
}

juce::String findMainWindow()
{
    auto& window = mainWindow();
    {
        std::lock_guard<std::mutex> guard(window.lock);
        if (window.name.isNotEmpty() && Platform::Endpoint::exists(window.name))
            return window.name;
    }
    // Looked up again: first use, or the main service went away (it may be back).
    const juce::String name(IPCMsg::MessageHelper::getDestName(Pubhead::eAppType::AppMain));
    const bool found = name.isNotEmpty() && Platform::Endpoint::exists(name);
    std::lock_guard<std::mutex> guard(window.lock);
    window.name = found ? name : juce::String();
    return window.name;
}
} // namespace

void SystemHelper::postToMain(int message, int wParam, int lParam)
{
    const auto window = findMainWindow();
    // Without a window the post goes nowhere, as a post to a null handle does.
    if (window.isNotEmpty())
        Platform::Endpoint::post(window, Platform::WindowMessage{message, wParam, lParam, 0});
}

void SystemHelper::marineKey(MarineKey key, const char* logText, int logLine)
{
    LogBridge::instance().logInfo(kLogSource, logLine, kLogTag, logText);
    postToMain(kSystemCommandMessage, kMarineKey, key);
}

void SystemHelper::beep()
{
    postToMain(kBeepMessage, 0, 0);
}

void SystemHelper::showEQ()
{
    postToMain(kShowEQMessage, 0, 0);
}

void SystemHelper::hideEQ()
{
    postToMain(kHideEQMessage, 0, 0);
}

void SystemHelper::sendTACancel()
{
    postToMain(kSystemCommandMessage, kTACancel, 0);
}

void SystemHelper::sendFRSwitch()
{
    postToMain(kSystemCommandMessage, kFRSwitch, 0);
}

void SystemHelper::sendGuide()
{
    postToMain(kSystemCommandMessage, kGuide, 0);
}

void SystemHelper::showMenu()
{
    postToMain(kSystemCommandMessage, kShowMenu, 0);
}

void SystemHelper::showBluetooth()
{
    postToMain(kSystemCommandMessage, kShowBluetooth, 0);
}

void SystemHelper::showMaintenance()
{
    postToMain(kSystemCommandMessage, kShowMaintenance, 0);
}

void SystemHelper::showTPMS()
{
    postToMain(kSystemCommandMessage, kShowTPMS, 0);
}

void SystemHelper::showTelematicsInfo()
{
    postToMain(kSystemCommandMessage, kShowTelematicsInfo, 0);
}

void SystemHelper::showTelematicsInbox()
{
    postToMain(kSystemCommandMessage, kShowTelematicsInbox, 0);
}

void SystemHelper::enterStandby()
{
    postToMain(kSystemCommandMessage, kEnterStandby, 0);
}

void SystemHelper::showCurrSource()
{
    postToMain(kSystemCommandMessage, kShowCurrSource, 0);
}

void SystemHelper::MarineRotaryNext()
{
    marineKey(kRotaryNext, "MarineRotaryNext", kLineRotaryNext);
}

void SystemHelper::MarineRotaryPre()
{
    marineKey(kRotaryPre, "MarineRotaryPre", kLineRotaryPre);
}

void SystemHelper::MarineRotaryEnter()
{
    marineKey(kRotaryEnter, "MarineRotaryEnter", kLineRotaryEnter);
}

void SystemHelper::MarineshowMenu()
{
    marineKey(kMarineShowMenu, "MarineshowMenu", kLineShowMenu);
}

void SystemHelper::MarineBack()
{
    marineKey(kMarineBack, "MarineBack", kLineBack);
}

void SystemHelper::Mute()
{
    marineKey(kMute, "Mute", kLineMute);
}

void SystemHelper::MarineShowZone2Volume()
{
    // Logs "Mute", not its own name: deliberate, log readers match on this text.
    marineKey(kShowZone2Volume, "Mute", kLineZone2Volume);
}
