#include "main/applicationapi/TelematicsApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/ForwardingResponse.h"

class TelematicsApi::GeneralResponseEx
    : public ForwardingResponse<TelematicsCallBack, Forward::notify | Forward::powerOff | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
const char* const kSource = "applicationapi/TelematicsApi";
constexpr int kDataArg = 0;

void toData(TelematicsCallBack& callBack, const AppMessage::Ptr& message)
{
    if (message->intParameter2 != kDataArg)
        return;
    const juce::MemoryBlock* data = ApiMessageHelper::byteArrayOf(message, ApiMessageHelper::KEY_DATA);
    if (data == nullptr)
        return ApiMessageHelper::logDropped(kSource, __LINE__, "TelematicsApi", message->intParameter1,
                                            "no bytes under \"data\"");
    callBack.onTelematicsData(static_cast<const unsigned char*>(data->getData()), (int)data->getSize());
}

const ApiDispatch::OwnCode<TelematicsCallBack> kOwnCodes[] = {{ApiCode::kTelematics, toData}};
} // namespace

TelematicsApi* TelematicsApi::getInstance()
{
    static auto* instance = new TelematicsApi(); // lives as long as the process: never torn down at exit
    return instance;
}

TelematicsApi::TelematicsApi() : ApplicationApi(Pubhead::eAppType::AppTelematics, true)
{
    adoptResponse<GeneralResponseEx>();
}

TelematicsApi::TelematicsApi(const TelematicsApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void TelematicsApi::callIn()
{
    postMessage(ApiCode::kTelematicsCommand, ApiCode::kTelematicsCallIn, 0, nullptr);
}

void TelematicsApi::hangup()
{
    postMessage(ApiCode::kTelematicsCommand, ApiCode::kTelematicsHangup, 0, nullptr);
}

void TelematicsApi::showNavi()
{
    postMessage(ApiCode::kTelematicsCommand, ApiCode::kTelematicsShowNavi, 0, nullptr);
}

void TelematicsApi::recvNewInboxInfoMsg(bool received)
{
    postMessage(ApiCode::kTelematicsCommand, ApiCode::kTelematicsNewInboxInfo, ApiCommand::flag(received), nullptr);
}

void TelematicsApi::recvNewInfoMsg(bool received)
{
    postMessage(ApiCode::kTelematicsCommand, ApiCode::kTelematicsNewInfo, ApiCommand::flag(received), nullptr);
}

void TelematicsApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
