#include "main/applicationapi/RadarApi.h"

#include "main/applicationapi/ForwardingResponse.h"

class RadarApi::GeneralResponseEx : public ForwardingResponse<RadarCallBack, Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

RadarApi::RadarApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack)
    : ApplicationApi(Pubhead::eAppType::AppRadar, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

RadarApi::RadarApi(const RadarApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void RadarApi::remoteCallBack(const AppMessage::Ptr& message)
{
    getGeneralService()->processMessage(message);
}
