#include "main/applicationapi/RadioApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class RadioApi::GeneralResponseEx
    : public ForwardingResponse<RadioCallBack, Forward::notify | Forward::powerOff | Forward::command | Forward::quit>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
constexpr auto kToCallBack = &ApiDispatch::messageAndCode<RadioCallBack, &RadioCallBack::onRadioMessage>;
const ApiDispatch::OwnCode<RadioCallBack> kOwnCodes[] = {{ApiCode::kCarData, kToCallBack},
                                                         {ApiCode::kRadio, kToCallBack},
                                                         {ApiCode::kRadio2, kToCallBack},
                                                         {ApiCode::kRadio3, kToCallBack},
                                                         {ApiCode::kPGN, kToCallBack}};
} // namespace

RadioApi* RadioApi::getInstance()
{
    static auto* instance = new RadioApi(); // lives as long as the process: never torn down at exit
    return instance;
}

RadioApi::RadioApi() : ApplicationApi(Pubhead::eAppType::AppRadio, true)
{
    adoptResponse<GeneralResponseEx>();
}

RadioApi::RadioApi(const RadioApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void RadioApi::sendToInfoBar(const InfoTuner::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarTuner, info);
}

void RadioApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
