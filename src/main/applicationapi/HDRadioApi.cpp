#include "main/applicationapi/HDRadioApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class HDRadioApi::GeneralResponseEx
    : public ForwardingResponse<HDRadioCallBack, Forward::notify | Forward::powerOff | Forward::command | Forward::quit>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
const ApiDispatch::OwnCode<HDRadioCallBack> kOwnCodes[] = {
    {ApiCode::kHDRadio, &ApiDispatch::arg1AndCode<HDRadioCallBack, &HDRadioCallBack::onHDRadioEvent>}};
} // namespace

HDRadioApi* HDRadioApi::getInstance()
{
    static auto* instance = new HDRadioApi(); // lives as long as the process: never torn down at exit
    return instance;
}

HDRadioApi::HDRadioApi() : ApplicationApi(Pubhead::eAppType::AppHDRadio, true)
{
    adoptResponse<GeneralResponseEx>();
}

HDRadioApi::HDRadioApi(const HDRadioApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void HDRadioApi::sendToInfoBar(const InfoTuner::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarTuner, info);
}

void HDRadioApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
