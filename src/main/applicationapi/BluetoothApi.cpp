#include "main/applicationapi/BluetoothApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/ForwardingResponse.h"

class BluetoothApi::GeneralResponseEx
    : public ForwardingResponse<BluetoothCallBack,
                                Forward::notify | Forward::powerOff | Forward::command | Forward::event>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
const char* const kSource = "applicationapi/BluetoothApi";
const char* const kTag = "BluetoothApi";
constexpr int kIpodInfoCount = 3;

void toPGN(BluetoothPGNCallBack& callBack, const AppMessage::Ptr& message)
{
    auto data = ApiMessageHelper::bundleOf(message);
    if (data == nullptr)
        return ApiMessageHelper::logDropped(kSource, __LINE__, kTag, message->intParameter1, "no Bundle attached");
    callBack.onPGNData(message->intParameter2, message->intParameter3, data);
}

void toIpodInfo(BluetoothIpodInfoCallBack& callBack, const AppMessage::Ptr& message)
{
    int values[kIpodInfoCount] = {};
    if (!ApiMessageHelper::intsOf(message, values, kIpodInfoCount))
        return ApiMessageHelper::logDropped(kSource, __LINE__, kTag, message->intParameter1,
                                            "no int array of three integers attached");
    callBack.onIpodInfo(values[0], values[1], values[2]);
}

using Main = BluetoothCallBack;
const ApiDispatch::OwnCode<Main> kOwnCodes[] = {
    {ApiCode::kBluetoothData, &ApiDispatch::messageAndCode<Main, &Main::onBluetoothMessage>},
    {ApiCode::kBluetoothPhone, &ApiDispatch::arguments<Main, &Main::onPhoneEvent>},
    {ApiCode::kBluetoothLink, &ApiDispatch::arguments<Main, &Main::onLinkEvent>},
    {ApiCode::kBluetooth, &ApiDispatch::arguments<Main, &Main::onBluetoothCommand>},
    {ApiCode::kBluetoothMusic, &ApiDispatch::arguments<Main, &Main::onMusicEvent>},
    {ApiCode::kCarData, &ApiDispatch::arguments<Main, &Main::onCarDataEvent>}};
const ApiDispatch::OwnCode<BluetoothPGNCallBack> kPGNCodes[] = {{ApiCode::kPGN, toPGN}};
const ApiDispatch::OwnCode<BluetoothIpodInfoCallBack> kIpodInfoCodes[] = {{ApiCode::kBluetoothIpodInfo, toIpodInfo}};
} // namespace

BluetoothApi* BluetoothApi::getInstance()
{
    static auto* instance = new BluetoothApi(); // lives as long as the process: never torn down at exit
    return instance;
}

BluetoothApi::BluetoothApi() : ApplicationApi(Pubhead::eAppType::AppBluetooth, true)
{
    adoptResponse<GeneralResponseEx>();
}

BluetoothApi::BluetoothApi(const BluetoothApi& other)
    : ApplicationApi(other), m_pPGNCallBack(other.m_pPGNCallBack), m_pIpodInfoCallBack(other.m_pIpodInfoCallBack)
{
    adoptResponse<GeneralResponseEx>();
}

void BluetoothApi::startA2DPSrc()
{
    postMessage(ApiCode::kBluetoothCommand, ApiCode::kStartA2DPSrc, 0, nullptr);
}

void BluetoothApi::sendToInfoBar(const InfoBT::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarBT, info);
}

void BluetoothApi::sendToInfoBar(const InfoMedia::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarMedia, info);
}

void BluetoothApi::remoteCallBack(const AppMessage::Ptr& message)
{
    if (ApiDispatch::deliverOwnCode(kOwnCodes, m_pCallBack, message)
        || ApiDispatch::deliverOwnCode(kPGNCodes, m_pPGNCallBack, message)
        || ApiDispatch::deliverOwnCode(kIpodInfoCodes, m_pIpodInfoCallBack, message))
        return;
    getGeneralService()->processMessage(message);
}
