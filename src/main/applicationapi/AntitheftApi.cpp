#include "main/applicationapi/AntitheftApi.h"

#include "main/applicationapi/ForwardingResponse.h"

class AntitheftApi::GeneralResponseEx : public ForwardingResponse<AntitheftCallBack, Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

AntitheftApi::AntitheftApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack)
    : ApplicationApi(Pubhead::eAppType::AppAntitheft, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

AntitheftApi::AntitheftApi(const AntitheftApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void AntitheftApi::remoteCallBack(const AppMessage::Ptr& message)
{
    getGeneralService()->processMessage(message);
}
