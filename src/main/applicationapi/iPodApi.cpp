#include "main/applicationapi/iPodApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class iPodApi::GeneralResponseEx
    : public ForwardingResponse<iPodCallBack,
                                Forward::notify | Forward::powerOff | Forward::stateChanged | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
constexpr auto kToCallBack = &ApiDispatch::messageAndCode<iPodCallBack, &iPodCallBack::oniPodMessage>;
const ApiDispatch::OwnCode<iPodCallBack> kOwnCodes[] = {
    {ApiCode::kiPod, kToCallBack},  {ApiCode::kiPod2, kToCallBack},     {ApiCode::kMediaList, kToCallBack},
    {ApiCode::kPGN, kToCallBack},   {ApiCode::kMediaInfo, kToCallBack}, {ApiCode::kiPod3, kToCallBack},
    {ApiCode::kiPod4, kToCallBack}, {ApiCode::kMediaApp, kToCallBack}};
} // namespace

iPodApi* iPodApi::getInstance()
{
    static auto* instance = new iPodApi(); // lives as long as the process: never torn down at exit
    return instance;
}

// false: the session opens only when the application asks (initMsgSession), deliberately.
iPodApi::iPodApi() : ApplicationApi(Pubhead::eAppType::AppiPod, false)
{
    adoptResponse<GeneralResponseEx>();
}

iPodApi::iPodApi(const iPodApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void iPodApi::sendToInfoBar(const InfoMedia::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarMedia, info);
}

void iPodApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
