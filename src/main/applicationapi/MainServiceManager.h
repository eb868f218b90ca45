#pragma once

#include "Message/AppMessage.h"
#include "Message/Bundle.h"
#include "Message/IMsgProc.h"
#include "Message/MsgSession.h"
#include "Pubhead.h"

#include <list>

class AppCmdCallBack;
class AppServiceCallBack;

/** One application's connection to the main service.

    It owns the process's message session, announces the application to the main service
    (connect request 1745, repeated every second) until the main service acknowledges it
    (1746), and keeps what the application posts meanwhile in a buffer of at most 50 messages
    that is sent, oldest first, on the acknowledgement; later ones are dropped. Incoming
    messages are handed, unchanged, to the service callback as AppMessages.

    Everything runs on the JUCE message thread: incoming messages, the retry timer and the
    callbacks. The class holds no lock. Callbacks are bound by raw pointer and never owned.
*/
class MainServiceManager : public IMsgProc, private juce::Timer
{
public:
    /** How many messages wait for the connection; the rest are dropped. */
    static constexpr int kMaxBufferedMessages = 50;
    /** The period of the connect request while not connected. */
    static constexpr int kConnectRetryMs = 1000;

    /** Configures the process's messaging with appType (also when initSession is false) and,
        with initSession, opens the session at once (see initMsgSession). callBack may be
        null: incoming messages are then dropped. */
    MainServiceManager(AppServiceCallBack* callBack, Pubhead::eAppType::EnumTypeTag appType,
                       Pubhead::eAppType::EnumTypeTag targetType, bool initSession);
    /** Copies the callbacks, the identities, the session (the same endpoint: whichever copy
        goes first closes it), the connected flag and the buffer, whose entries are the same
        messages. The copy's timer is not running. */
    MainServiceManager(const MainServiceManager& other);
    MainServiceManager& operator=(const MainServiceManager&) = delete;
    /** Releases the buffered messages and closes the session; sends nothing. */
    ~MainServiceManager() override;

    /** Opens the session with this object as consumer; unless connected, posts the connect
        request and starts the retry timer. */
    void initMsgSession();
    /** The answer to 1744: unless connected, posts the connect request and restarts the timer. */
    void connectMainService();
    /** The answer to 1746: marks the connection, stops the timer, logs, and sends the buffer.
        A second acknowledgement logs again and sends nothing more. */
    void connectSucceed();

    /** Post at once, whatever the connection state, with param1 = this application's type.
        (Unlike the AppServiceApi requests of the same names, which are buffered.) */
    void replyHeartbeat();
    void replyPowerOffReady();
    void systemBeep();

    /** Posts to the main service when connected; otherwise buffers (see the class). */
    void postMessage(int code, int param1, int param2, const juce::ReferenceCountedObjectPtr<Parcelable>& object);
    /** The same with code, param1, param2 and the object taken from the message; an attached
        object that is not a Parcelable travels as null. A null message does nothing. */
    void postMessage(const juce::ReferenceCountedObjectPtr<AppMessage>& message);

    /** Hands each message to the service callback as an AppMessage. */
    void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& message) override;
    void procUnknownMsg(int value1, int value2, int value3) override;

    /** A command-line Bundle (1754) to the bound command callback through AppCmdHelper; with
        none bound, an error line and the command is dropped. */
    void procCommandInfo(const juce::ReferenceCountedObjectPtr<Bundle>& info);
    /** Null unbinds. */
    void bindAppCmdCallBack(AppCmdCallBack* callBack) { m_pAppCmdCallBack = callBack; }

    Pubhead::eAppType::EnumTypeTag getAppType() const { return m_eAppType; }
    /** The session's endpoint handle, or null before initMsgSession. */
    void* getNativeHandle() const { return m_msgSession.getNativeHandle(); }

private:
    void timerCallback() override;
    void addToMessageBuffer(int code, int param1, int param2,
                            const juce::ReferenceCountedObjectPtr<Parcelable>& object);
    void postMessageInBuffer();
    void postConnectRequest();

    AppServiceCallBack* m_pServiceCallBack;
    AppCmdCallBack* m_pAppCmdCallBack = nullptr;
    Pubhead::eAppType::EnumTypeTag m_eAppType;
    Pubhead::eAppType::EnumTypeTag m_eTargetType;
    MsgSession m_msgSession;
    bool m_bConnected = false;
    std::list<juce::ReferenceCountedObjectPtr<RemoteMessage>> m_messageBuffer;
};
