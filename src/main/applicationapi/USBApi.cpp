#include "main/applicationapi/USBApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ForwardingResponse.h"

class USBApi::GeneralResponseEx
    : public ForwardingResponse<USBCallBack, Forward::notify | Forward::powerOff | Forward::command | Forward::quit>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
constexpr auto kToCallBack = &ApiDispatch::messageAndCode<USBCallBack, &USBCallBack::onUSBMessage>;
const ApiDispatch::OwnCode<USBCallBack> kOwnCodes[] = {{ApiCode::kUSB, kToCallBack},
                                                       {ApiCode::kMediaList, kToCallBack},
                                                       {ApiCode::kPGN, kToCallBack},
                                                       {ApiCode::kMediaInfo, kToCallBack}};
constexpr int kSourceWhenSet = 10;
constexpr int kSourceWhenClear = 7;
} // namespace

USBApi* USBApi::getInstance()
{
    static auto* instance = new USBApi(); // lives as long as the process: never torn down at exit
    return instance;
}

USBApi::USBApi() : ApplicationApi(Pubhead::eAppType::AppUSB, true)
{
    adoptResponse<GeneralResponseEx>();
}

USBApi::USBApi(const USBApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void USBApi::sendToInfoBar(const InfoMedia::Ptr& info, bool sourceFlag)
{
    if (info != nullptr) // the caller's record is rewritten on purpose: callers read the source back
        info->sourceID = sourceFlag ? kSourceWhenSet : kSourceWhenClear;
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarMedia, info);
}

void USBApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
