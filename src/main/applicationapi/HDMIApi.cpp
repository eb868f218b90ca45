#include "main/applicationapi/HDMIApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class HDMIApi::GeneralResponseEx : public ForwardingResponse<HDMICallBack, Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
using CallBack = HDMICallBack;
const ApiDispatch::OwnCode<CallBack> kOwnCodes[] = {
    {ApiCode::kHDMI2, &ApiDispatch::arguments<CallBack, &CallBack::onHDMISignal>},
    // Delivered here and then to the common dispatch as well: deliberate.
    {ApiCode::kHDMI, &ApiDispatch::arguments<CallBack, &CallBack::onHDMIState>, ApiDispatch::Then::goCommon}};
} // namespace

HDMIApi* HDMIApi::getInstance()
{
    static auto* instance = new HDMIApi(); // lives as long as the process: never torn down at exit
    return instance;
}

HDMIApi::HDMIApi() : ApplicationApi(Pubhead::eAppType::AppHDMI, true)
{
    adoptResponse<GeneralResponseEx>();
}

HDMIApi::HDMIApi(const HDMIApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void HDMIApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
