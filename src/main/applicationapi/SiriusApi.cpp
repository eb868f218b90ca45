#include "main/applicationapi/SiriusApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class SiriusApi::GeneralResponseEx
    : public ForwardingResponse<SiriusCallBack, Forward::notify | Forward::powerOff | Forward::command | Forward::event>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
constexpr auto kToCallBack = &ApiDispatch::messageAndCode<SiriusCallBack, &SiriusCallBack::onSiriusMessage>;
const ApiDispatch::OwnCode<SiriusCallBack> kOwnCodes[] = {{ApiCode::kSirius, kToCallBack},
                                                          {ApiCode::kPGN, kToCallBack}};
} // namespace

SiriusApi* SiriusApi::getInstance()
{
    static auto* instance = new SiriusApi(); // lives as long as the process: never torn down at exit
    return instance;
}

SiriusApi::SiriusApi() : ApplicationApi(Pubhead::eAppType::AppSirius, true)
{
    adoptResponse<GeneralResponseEx>();
}

SiriusApi::SiriusApi(const SiriusApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void SiriusApi::sendToInfoBar(const InfoSatRadio::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarSatRadio, info);
}

void SiriusApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
