#include "main/applicationapi/StandbyApi.h"

#include "main/applicationapi/ApiCodes.h"

// Every notification keeps the default of GeneralResponse: nothing here to forward to.
StandbyApi::StandbyApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack)
    : AppServiceApi(Pubhead::eAppType::AppStandby, true),
      m_pResponse(std::make_unique<GeneralResponse>(getGeneralService()))
{
    setGeneralResponse(m_pResponse.get());
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

StandbyApi::StandbyApi(const StandbyApi& other)
    : AppServiceApi(other), m_pResponse(std::make_unique<GeneralResponse>(getGeneralService()))
{
    setGeneralResponse(m_pResponse.get());
    bindViewCallBack(other.m_pResponse->getViewCallBack());
}

StandbyApi& StandbyApi::operator=(const StandbyApi& other)
{
    bindViewCallBack(other.m_pResponse->getViewCallBack());
    return *this;
}

StandbyApi::~StandbyApi()
{
    setGeneralResponse(nullptr);
}

void StandbyApi::exitStandby()
{
    postMessage(ApiCode::kStandbyCommand, ApiCode::kExitStandby, 0, nullptr);
}

void StandbyApi::remoteCallBack(const AppMessage::Ptr& message)
{
    getGeneralService()->processMessage(message);
}
