#include "main/applicationapi/EQApi.h"

#include "main/applicationapi/ForwardingResponse.h"

class EQApi::GeneralResponseEx : public ForwardingResponse<EQCallBack, Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

EQApi::EQApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack) : ApplicationApi(Pubhead::eAppType::AppEQ, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

EQApi::EQApi(const EQApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void EQApi::remoteCallBack(const AppMessage::Ptr& message)
{
    getGeneralService()->processMessage(message);
}
