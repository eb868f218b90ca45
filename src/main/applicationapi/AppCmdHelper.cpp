#include "main/applicationapi/AppCmdHelper.h"

#include "main/applicationapi/AppCmdCallBack.h"
#include "main/applicationapi/AppServiceApi.h"
#include "main/applicationapi/ServiceCodes.h"

void AppCmdHelper::processCmd(const juce::ReferenceCountedObjectPtr<AppCommandLine>& command, AppCmdCallBack* callBack)
{
    if (command == nullptr || callBack == nullptr)
        return;
    const auto service = command->getService();
    const auto& extra = command->getExtraData();
    switch (command->getCommand())
    {
    case AppCommandLine::kSourceEnter:
        callBack->onSourceEnter(service, command->isParking(), command->isFrontShow(), extra);
        break;
    case AppCommandLine::kSourceExit:
        callBack->onSourceExit(service, command->getNextService(), extra);
        break;
    case AppCommandLine::kPageShow:
        callBack->onPageShow(service, command->isParking(), extra);
        break;
    case AppCommandLine::kPageHide:
        callBack->onPageHide(service, command->getNextService(), extra);
        if (auto* api = AppServiceApi::getInstance())
            api->postMessage(ServiceCode::kPageHidden, service, 0, nullptr);
        break;
    default:
        break;
    }
}
