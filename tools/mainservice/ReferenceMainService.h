#pragma once

#include "FrameScript.h"

#include <LmCom.h>

#include <map>
#include <set>

/** The main service of a simulated head unit: the process at AppMain ("NavigRecive").

    It acknowledges connect requests, asks applications that were running before it to connect,
    sends heartbeats and notices applications that stop answering them, shows pages on request
    (hiding the page shown before), prints and forwards info-bar records to the main menu, plays
    a script of answer frames to the car information application and prints its requests, and
    at the end powers the applications off and asks them to quit. Every step is one readable
    line on standard output, starting with "[main]". Runs on the JUCE message thread.
*/
class ReferenceMainService : public IMsgProc, private juce::Timer
{
public:
    struct Options
    {
        /** The heartbeat period. */
        int heartbeatMs = 1000;
        /** Heartbeats left unanswered before an application counts as not answering. */
        int missedLimit = 3;
        /** How long to run before powering off; 0 runs until stop() is called. */
        int runMs = 0;
        /** How long to wait for power-off answers, and then for the applications to quit. */
        int shutdownWaitMs = 3000;
        /** Answer frames played to the car information application once it connects. */
        std::vector<FrameScript::Entry> carInfoFrames;
    };

    explicit ReferenceMainService(const Options& options);
    ~ReferenceMainService() override;

    /** Opens the endpoint and starts; false when another main service holds it. */
    bool start();
    /** Powers the applications off and asks them to quit; the dispatch loop stops when they
        are gone or the wait is over. */
    void stop();
    /** Whether the shutdown sequence has finished. */
    bool isFinished() const { return m_phase == Phase::finished; }

    void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& message) override;
    void procUnknownMsg(int msg, int wParam, int lParam) override;

private:
    enum class Phase
    {
        running,
        poweringOff,
        quitting,
        finished
    };

    struct App
    {
        bool connected = false;
        bool silent = false;
        int unanswered = 0;
        bool powerOffReady = false;
    };

    struct Page
    {
        int service = -1;
        int owner = -1;
    };

    void timerCallback() override;
    void heartbeatRound();
    void progressShutdown();
    void finish();

    void onConnectRequest(int sender);
    void onHeartbeatReply(int sender);
    void onRequestPageShow(int sender, int service);
    void onInfoBar(int sender, int kind, int param2, Parcelable* object);
    void onGeneralToInfoBar(int sender, int param1, int param2);
    void onSetting(int sender, int id, int type, Parcelable* object);
    void onCarInfoFrame(int sender, Parcelable* object);
    void playCarInfoFrames();

    bool post(int dest, int code, int param1, int param2, Parcelable* object = nullptr);
    juce::String connectedNames() const;

    Options m_options;
    MsgSession m_session;
    std::map<int, App> m_apps;
    Page m_page;
    Phase m_phase = Phase::running;
    juce::int64 m_startedAt = 0;
    juce::int64 m_lastHeartbeatAt = 0;
    juce::int64 m_phaseDeadline = 0;
    int m_heartbeatRound = 0;
    size_t m_nextCarInfoFrame = 0;
    juce::int64 m_nextCarInfoFrameAt = -1; // -1: not playing
};

/** One line on standard output, flushed at once. */
void mainSay(const juce::String& text);
