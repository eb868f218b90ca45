#include "main/applicationapi/DVBTApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/ForwardingResponse.h"

class DVBTApi::GeneralResponseEx
    : public ForwardingResponse<DVBTCallBack, Forward::notify | Forward::powerOff | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
// Swallowed without any call, callback or not: deliberate.
const ApiDispatch::OwnCode<DVBTCallBack> kOwnCodes[] = {{ApiCode::kDVBT, nullptr}};
} // namespace

DVBTApi* DVBTApi::getInstance()
{
    static auto* instance = new DVBTApi(); // lives as long as the process: never torn down at exit
    return instance;
}

DVBTApi::DVBTApi() : ApplicationApi(Pubhead::eAppType::AppDVBT, true)
{
    adoptResponse<GeneralResponseEx>();
}

DVBTApi::DVBTApi(const DVBTApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void DVBTApi::sendConnectState(bool connected)
{
    postMessage(ApiCode::kDVBTCommand, ApiCode::kDVBTConnectState, ApiCommand::flag(connected), nullptr);
}

void DVBTApi::sendCommand(const void* data, int length)
{
    if (length < 0 || (data == nullptr && length > 0))
        return;
    auto payload = Bundle::obtain();
    payload->putByteArray(ApiMessageHelper::KEY_DATA, data, length);
    postMessage(ApiCode::kDVBTCommand, ApiCode::kDVBTData, length, payload);
}

void DVBTApi::remoteCallBack(const AppMessage::Ptr& message)
{
    ApiDispatch::route(kOwnCodes, m_pCallBack, *getGeneralService(), message);
}
