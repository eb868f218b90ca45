#pragma once

#include "support/AppPeer.h"
#include "support/ChildProcess.h"

#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/InfoMedia.h"

#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

namespace LmComTesting
{

/** Text of the values that callback operations receive, as the API tests record them. */
std::string show(int value);
std::string show(bool value);
std::string show(const juce::String& value);
std::string show(const juce::MemoryBlock& bytes);
/** "{Action=255 InforText='FM 1' SourceID=0}", keys sorted; "null" for none. */
std::string show(const Bundle::Ptr& bundle);
/** "msg <code> <p1> <p2> <object>" with the object's class (Bundle contents, "none"). */
std::string show(const AppMessage::Ptr& message);
std::string show(const InfoMedia::Ptr& info);
std::string show(const Parcelable::Ptr& object);

/** The calls of a recording callback, as "onPowerOff 7". */
class CallLog
{
public:
    template <class... Args>
    void add(const char* operation, const Args&... args)
    {
        std::string call = operation;
        ((call += " " + show(args)), ...);
        m_calls.push_back(call);
        if (after)
            after(call);
    }
    /** The calls so far, joined with "; ", and forgets them. */
    std::string take();
    /** Runs after each call is recorded. */
    std::function<void(const std::string&)> after;

private:
    std::vector<std::string> m_calls;
};

/** A Bundle holding bytes under "data". */
Bundle::Ptr dataBundle(std::initializer_list<int> bytes);

/** A callback of type CallBack that records the common notifications it receives as "notify
    1 2", "powerOff 5", "state true", "command 6 7", "event 8" and "quit <message>"; a test
    adds the API's own operations. Operations that CallBack lacks are plain members. */
template <class CallBack>
class Recorder : public CallBack
{
public:
    void onGeneralNotify(int p1, int p2) { log.add("notify", p1, p2); }
    void onPowerOff(int p1) { log.add("powerOff", p1); }
    void onStateChanged(bool state) { log.add("state", state); }
    void onGeneralCommand(int p1, int p2) { log.add("command", p1, p2); }
    void onGeneralEvent(int p1) { log.add("event", p1); }
    void onQuit(const AppMessage::Ptr& message) { log.add("quit", message); }

    CallLog log;
};

/** One command of an API and what the main service receives for it: "code p1 p2" and the
    Bundle (show), or "" for a command that sends nothing. */
struct Sent
{
    std::function<void()> command;
    std::string received;
};

/** One incoming message and the callback calls it must cause, joined with "; " ("" none). */
struct Incoming
{
    int code, param1, param2;
    juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject> object;
    std::string calls;
};

/** Table-driven tests of an application API; the test process plays the main service. */
class ApiTest : public FrameworkTest
{
protected:
    /** Runs the commands while the API is not connected yet, connects it and compares what
        the main service received, in order, all sent by the API's type. */
    void expectCommands(AppServiceApi& api, const std::vector<Sent>& table);
    /** Delivers each message to the API (as its manager does) and compares the calls. */
    void expectIncoming(AppServiceApi& api, CallLog& log, const std::vector<Incoming>& table);
    /** Delivers every object of notABundle() (and of badBundles() with bundlesToo) under each
        code, with param1 = param1: no call may follow. */
    void expectHostileDropped(AppServiceApi& api, CallLog& log, std::initializer_list<int> codes, int param1 = 0,
                              bool bundlesToo = true);
    /** The six common notifications, each with the call that it causes when the API
        forwards it (forwarded names it: "notify powerOff state command event quit") and no
        call otherwise. Then checks that the main service received exactly the power-off
        answer "1204 5 0" when powerOffAnswered, and nothing otherwise. */
    void expectCommonNotifications(AppServiceApi& api, CallLog& log, const std::string& forwarded,
                                   bool powerOffAnswered);
    /** Posts a marker through the API and waits for it: returns what the main service
        received from index first on, before the marker, as "code p1 p2 {bundle}". */
    std::vector<std::string> flush(AppServiceApi& api, size_t first);

    /** For an API made with (AppCmdCallBack*, ViewCallBack*) given callBacks: the view
        receives 1725 and the command handler a page-show command line. */
    void expectConstructorCallBacks(AppServiceApi& api, RecordingCallBacks& callBacks);

    /** Rows for codes that reach an operation with (the message, its code): each code with
        param1 1 and param2 2 and the call "<name> msg <code> 1 2 none <code>". */
    static std::vector<Incoming> messageRows(const std::string& name, std::initializer_list<int> codes);

    static void deliver(AppServiceApi& api, int code, int param1, int param2,
                        juce::ReferenceCountedObject* object = nullptr);

    /** Objects that are no Bundle: none, a ParcelableArray, a RemoteMessage, a plain object. */
    static std::vector<juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>> notABundle();
    /** Bundles without what a decoder looks for: empty, "data" not bytes, an int array of two
        ints, a byte array where an int array should be. */
    static std::vector<juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>> badBundles();
};

/** An application process on one API against the reference main service, both children of
    the test on its private bus. The test process posts to the application as the navigation
    application (AppNavi).

    The "api" child role (args: Radio, USB or Bluetooth) binds a callback for everything, sends
    its info-bar record (Bluetooth also its A2DP command) with kTitle at start, prints "READY",
    then "CB <call>" for each callback call and "QUIT" when asked to quit. */
class ApiProcessTest : public LmComTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    static void post(int appType, int code, int param1, int param2, Parcelable* object = nullptr);
    /** The title of the records that the child sends, as the main service quotes it. */
    static std::string title();

    std::unique_ptr<MessageLoop> loop;
    MainRecorder ignored;
    std::unique_ptr<MsgSession> session;
};

} // namespace LmComTesting
