#include "main/applicationapi/CameraApi.h"

#include "main/applicationapi/ForwardingResponse.h"

class CameraApi::GeneralResponseEx
    : public ForwardingResponse<CameraCallBack, Forward::notify | Forward::stateChanged | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

CameraApi::CameraApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack)
    : ApplicationApi(Pubhead::eAppType::AppCamera, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

CameraApi::CameraApi(const CameraApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void CameraApi::remoteCallBack(const AppMessage::Ptr& message)
{
    getGeneralService()->processMessage(message);
}
