#include "main/applicationapi/AuxInApi.h"

#include "main/applicationapi/ForwardingResponse.h"

class AuxInApi::GeneralResponseEx
    : public ForwardingResponse<AuxInCallBack, Forward::notify | Forward::stateChanged | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

AuxInApi::AuxInApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack)
    : ApplicationApi(Pubhead::eAppType::AppAuxIn, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

AuxInApi::AuxInApi(const AuxInApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void AuxInApi::remoteCallBack(const AppMessage::Ptr& message)
{
    getGeneralService()->processMessage(message);
}
