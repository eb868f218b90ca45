#include "main/applicationapi/MainServiceManager.h"

#include "AppIdentity.h"
#include "LogBridge.h"
#include "Message/MessageHelper.h"
#include "Message/RemoteObjFormat.h"
#include "main/applicationapi/AppCmdHelper.h"
#include "main/applicationapi/AppServiceCallBack.h"
#include "main/applicationapi/ServiceCodes.h"

namespace
{
const char* const kSource = "applicationapi/MainServiceManager";
} // namespace

MainServiceManager::MainServiceManager(AppServiceCallBack* callBack, Pubhead::eAppType::EnumTypeTag appType,
                                       Pubhead::eAppType::EnumTypeTag targetType, bool initSession)
    : m_pServiceCallBack(callBack), m_eAppType(appType), m_eTargetType(targetType)
{
    IPCMsg::MessageHelper::config(appType, ::getDestName);
    if (initSession)
        initMsgSession();
}

MainServiceManager::MainServiceManager(const MainServiceManager& other)
    : IMsgProc(other), juce::Timer(other), m_pServiceCallBack(other.m_pServiceCallBack),
      m_pAppCmdCallBack(other.m_pAppCmdCallBack), m_eAppType(other.m_eAppType), m_eTargetType(other.m_eTargetType),
      m_msgSession(other.m_msgSession), m_bConnected(other.m_bConnected), m_messageBuffer(other.m_messageBuffer)
{
}

MainServiceManager::~MainServiceManager()
{
    stopTimer();
    m_messageBuffer.clear();
}

void MainServiceManager::initMsgSession()
{
    m_msgSession.init(this);
    if (!m_bConnected)
    {
        postConnectRequest();
        startTimer(kConnectRetryMs);
    }
}

void MainServiceManager::connectMainService()
{
    if (m_bConnected)
        return;
    postConnectRequest();
    startTimer(kConnectRetryMs);
}

void MainServiceManager::connectSucceed()
{
    m_bConnected = true;
    stopTimer();
    LogBridge::instance().logInfo(kSource, 126, "MainServiceManager",
                                  juce::String(appTypeName(m_eAppType)) + " connect succeed");
    postMessageInBuffer();
}

void MainServiceManager::timerCallback()
{
    // No test of the connected flag here: connectSucceed stops the timer.
    postConnectRequest();
}

void MainServiceManager::postConnectRequest()
{
    IPCMsg::MessageHelper::postMessage(m_eTargetType, ServiceCode::kConnectRequest, m_eAppType, 0, nullptr);
}

void MainServiceManager::replyHeartbeat()
{
    IPCMsg::MessageHelper::postMessage(m_eTargetType, ServiceCode::kHeartbeatReply, m_eAppType, 0, nullptr);
}

void MainServiceManager::replyPowerOffReady()
{
    IPCMsg::MessageHelper::postMessage(m_eTargetType, ServiceCode::kPowerOffReady, m_eAppType, 0, nullptr);
}

void MainServiceManager::systemBeep()
{
    IPCMsg::MessageHelper::postMessage(m_eTargetType, ServiceCode::kSystemBeep, m_eAppType, 0, nullptr);
}

void MainServiceManager::postMessage(int code, int param1, int param2,
                                     const juce::ReferenceCountedObjectPtr<Parcelable>& object)
{
    if (m_bConnected)
        IPCMsg::MessageHelper::postMessage(m_eTargetType, code, param1, param2, object.get());
    else
        addToMessageBuffer(code, param1, param2, object);
}

void MainServiceManager::postMessage(const juce::ReferenceCountedObjectPtr<AppMessage>& message)
{
    if (message == nullptr)
        return;
    Parcelable::Ptr object(dynamic_cast<Parcelable*>(message->pointerParameter.get()));
    postMessage(message->intParameter1, message->intParameter2, message->intParameter3, object);
}

void MainServiceManager::addToMessageBuffer(int code, int param1, int param2,
                                            const juce::ReferenceCountedObjectPtr<Parcelable>& object)
{
    // A process started long before the main service must not grow without bound: the rest
    // is dropped without a trace.
    if ((int)m_messageBuffer.size() >= kMaxBufferedMessages)
        return;
    auto message = RemoteMessage::obtain();
    message->code = code;
    message->param1 = param1;
    message->param2 = param2;
    message->object = object;
    m_messageBuffer.push_back(message);
}

void MainServiceManager::postMessageInBuffer()
{
    std::list<juce::ReferenceCountedObjectPtr<RemoteMessage>> pending;
    pending.swap(m_messageBuffer);
    // A message that fails to send is not kept: only the connect request is ever repeated.
    for (auto& message : pending)
        IPCMsg::MessageHelper::postMessage(m_eTargetType, message);
}

void MainServiceManager::procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& message)
{
    if (m_pServiceCallBack == nullptr || message == nullptr)
        return;
    AppMessage::Ptr appMessage(new AppMessage(message->code, message->param1, message->param2, message->object.get()));
    // The session recycles the message after this call, which would empty its object for every
    // holder: the application's message keeps it whole.
    message->object = nullptr;
    m_pServiceCallBack->remoteCallBack(appMessage);
}

void MainServiceManager::procUnknownMsg(int value1, int value2, int value3)
{
    if (m_pServiceCallBack == nullptr)
        return;
    m_pServiceCallBack->remoteCallBack(AppMessage::Ptr(new AppMessage(value1, value2, value3)));
}

void MainServiceManager::procCommandInfo(const juce::ReferenceCountedObjectPtr<Bundle>& info)
{
    if (m_pAppCmdCallBack == nullptr)
    {
        LogBridge::instance().logError(kSource, 151, "AppServiceApi",
                                       "Please call AppServiceApi::bindAppCmdCallBack first!");
        return;
    }
    AppCmdHelper::processCmd(RemoteObjFormat::generateCommandLine(info), m_pAppCmdCallBack);
}
