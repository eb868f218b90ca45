#include "main/applicationapi/GeneralResponse.h"

#include "main/applicationapi/GeneralService.h"
#include "main/applicationapi/MainServiceManager.h"
#include "main/applicationapi/ServiceCodes.h"

void GeneralResponse::onGeneralNotify(int, int) {}

void GeneralResponse::onPowerOff(int param1)
{
    if (m_pGeneralService == nullptr || m_pGeneralService->getMainServiceManager() == nullptr)
        return;
    m_pGeneralService->getMainServiceManager()->postMessage(ServiceCode::kPowerOffReady, param1, 0, nullptr);
}

void GeneralResponse::onStateChanged(bool) {}

void GeneralResponse::onGeneralCommand(int, int) {}

void GeneralResponse::onGeneralEvent(int) {}

void GeneralResponse::onQuit(const juce::ReferenceCountedObjectPtr<AppMessage>&)
{
    if (auto* application = juce::JUCEApplicationBase::getInstance())
        application->systemRequestedQuit();
}
