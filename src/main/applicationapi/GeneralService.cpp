#include "main/applicationapi/GeneralService.h"

#include "LogBridge.h"
#include "main/applicationapi/GeneralResponse.h"
#include "main/applicationapi/MainServiceManager.h"
#include "main/applicationapi/ServiceCodes.h"
#include "main/applicationapi/ViewCallBack.h"

namespace
{
const char* const kSource = "applicationapi/AppServiceApi";

void unboundView(int line)
{
    LogBridge::instance().logError(kSource, line, "AppServiceApi",
                                   "Please call AppServiceApi::bindViewCallBack first!");
}
} // namespace

bool GeneralService::processMessage(const juce::ReferenceCountedObjectPtr<AppMessage>& message)
{
    if (m_pGeneralResponse == nullptr || message == nullptr)
        return false;
    const int code = message->intParameter1;
    const int param1 = message->intParameter2;
    const int param2 = message->intParameter3;
    ViewCallBack* view = m_pGeneralResponse->getViewCallBack();

    switch (code)
    {
    case ServiceCode::kPleaseConnect:
        if (m_pMainServiceManager != nullptr)
            m_pMainServiceManager->connectMainService();
        return true;
    case ServiceCode::kConnectAck:
        if (m_pMainServiceManager != nullptr)
            m_pMainServiceManager->connectSucceed();
        return true;
    case ServiceCode::kHeartbeat:
        if (m_pMainServiceManager != nullptr)
            m_pMainServiceManager->replyHeartbeat();
        return true;
    case ServiceCode::kCommandInfo:
        if (m_pMainServiceManager != nullptr)
            m_pMainServiceManager->procCommandInfo(Bundle::Ptr(dynamic_cast<Bundle*>(message->pointerParameter.get())));
        return true;
    case ServiceCode::kViewShow:
        if (view != nullptr)
            view->onViewShow(param1, code);
        else
            unboundView(48);
        return true;
    case ServiceCode::kViewHide:
        if (view != nullptr)
            view->onViewHide(param1, code);
        else
            unboundView(58);
        return true;
    case ServiceCode::kViewNotify:
        if (view != nullptr)
            view->onViewNotify(param1, code);
        else
            unboundView(68);
        return true;
    case ServiceCode::kGeneralNotify:
        m_pGeneralResponse->onGeneralNotify(param1, param2);
        return true;
    case ServiceCode::kPowerOff:
        m_pGeneralResponse->onPowerOff(param1);
        return true;
    case ServiceCode::kStateChanged:
        m_pGeneralResponse->onStateChanged(param1 != 0);
        return true;
    case ServiceCode::kGeneralCommand:
        m_pGeneralResponse->onGeneralCommand(param1, param2);
        return true;
    case ServiceCode::kGeneralEvent:
        m_pGeneralResponse->onGeneralEvent(param1);
        return true;
    case ServiceCode::kQuit:
        m_pGeneralResponse->onQuit(message);
        return true;
    default:
        return false;
    }
}
