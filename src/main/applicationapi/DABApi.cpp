#include "main/applicationapi/DABApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class DABApi::GeneralResponseEx : public ForwardingResponse<DABCallBack, Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
const ApiDispatch::OwnCode<DABCallBack> kOwnCodes[] = {
    {ApiCode::kDAB, &ApiDispatch::messageAndCode<DABCallBack, &DABCallBack::onDABMessage>}};
} // namespace

DABApi::DABApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack)
    : ApplicationApi(Pubhead::eAppType::AppDAB, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

DABApi::DABApi(const DABApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void DABApi::postMsgToMain(unsigned int param1, long param2)
{
    postMessage(ApiCode::kDABToMain, (int)param1, (int)param2, nullptr);
}

void DABApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
