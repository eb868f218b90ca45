#pragma once

/** Asks the main service (AppMain) to do something on the head unit: beep, show a screen, enter
    standby, the marine rotary-knob keys. Each operation posts one plain window message to the
    main service's endpoint, which hands it to its consumer's procUnknownMsg (message, wParam,
    lParam as listed below). Fire and forget: without a main service (or before
    IPCMsg::MessageHelper::config) nothing reaches anyone and nothing is reported. Any thread.
*/
class SystemHelper
{
public:
    /** The window messages and their wParam values. */
    static constexpr int kBeepMessage = 1137;          // WM_USER + 113
    static constexpr int kShowEQMessage = 1766;        // WM_USER + 742
    static constexpr int kHideEQMessage = 1767;        // WM_USER + 743
    static constexpr int kSystemCommandMessage = 1133; // WM_USER + 109, wParam below
    enum SystemCommand
    {
        kTACancel = 1,
        kFRSwitch = 2,
        kGuide = 3,
        kShowMenu = 4,
        kShowBluetooth = 5,
        kShowMaintenance = 6,
        kShowTPMS = 7,
        kShowTelematicsInfo = 8,
        kShowTelematicsInbox = 9,
        kEnterStandby = 10,
        kShowCurrSource = 11,
        /** The marine keys; lParam tells which (MarineKey). */
        kMarineKey = 12
    };
    enum MarineKey
    {
        kRotaryNext = 0,
        kRotaryPre = 1,
        kRotaryEnter = 2,
        kMarineShowMenu = 3,
        kMarineBack = 4,
        kMute = 5,
        kShowZone2Volume = 6
    };

    static void beep();
    static void showEQ();
    static void hideEQ();
    static void sendTACancel();
    static void sendFRSwitch();
    static void sendGuide();
    static void showMenu();
    static void showBluetooth();
    static void showMaintenance();
    static void showTPMS();
    static void showTelematicsInfo();
    static void showTelematicsInbox();
    static void enterStandby();
    static void showCurrSource();

    /** The marine keys also write an information line (tag "SystemHelper") before posting. */
    static void MarineRotaryNext();
    static void MarineRotaryPre();
    static void MarineRotaryEnter();
    static void MarineshowMenu();
    static void MarineBack();
    static void Mute();
    static void MarineShowZone2Volume();

private:
    SystemHelper() = delete;

    static void postToMain(int message, int wParam, int lParam);
    static void marineKey(MarineKey key, const char* logText, int logLine);
};
