#include "main/applicationapi/PandoraApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class PandoraApi::GeneralResponseEx
    : public ForwardingResponse<PandoraCallBack, Forward::notify | Forward::powerOff | Forward::command | Forward::quit>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
constexpr auto kToCallBack = &ApiDispatch::messageAndCode<PandoraCallBack, &PandoraCallBack::onPandoraMessage>;
const ApiDispatch::OwnCode<PandoraCallBack> kOwnCodes[] = {
    {ApiCode::kPandora, kToCallBack},   {ApiCode::kPandora2, kToCallBack}, {ApiCode::kPGN, kToCallBack},
    {ApiCode::kMediaInfo, kToCallBack}, {ApiCode::kPandora3, kToCallBack}, {ApiCode::kMediaApp, kToCallBack}};
} // namespace

PandoraApi* PandoraApi::getInstance()
{
    static auto* instance = new PandoraApi(); // lives as long as the process: never torn down at exit
    return instance;
}

PandoraApi::PandoraApi() : ApplicationApi(Pubhead::eAppType::AppPandora, true)
{
    adoptResponse<GeneralResponseEx>();
}

PandoraApi::PandoraApi(const PandoraApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void PandoraApi::sendToInfoBar(const InfoMedia::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarMedia, info);
}

void PandoraApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
