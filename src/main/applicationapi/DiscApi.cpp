#include "main/applicationapi/DiscApi.h"

#include "Message/RemoteObjFormat.h"
#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiCommand.h"
#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/ForwardingResponse.h"

// The power-off request is not answered here: deliberate, the player answers when it is ready.
class DiscApi::GeneralResponseEx
    : public ForwardingResponse<DiscCallBack,
                                Forward::notify | Forward::powerOff | Forward::noPowerOffAnswer | Forward::command>
{
public:
    explicit GeneralResponseEx(DiscApi& api) : ForwardingResponse(api.getGeneralService(), &api.m_pCallBack), m_api(api)
    {
    }

    void onGeneralEvent(int p1) override
    {
        ApiDispatch::call(m_api.m_pSetupDataCallBack, &DiscSetupDataCallBack::onGeneralEvent, p1);
    }

private:
    DiscApi& m_api;
};

namespace
{
const char* const kSource = "applicationapi/DiscApi";
const char* const kTag = "DiscApi";

void dropped(const AppMessage::Ptr& message, int line, const char* reason)
{
    ApiMessageHelper::logDropped(kSource, line, kTag, message->intParameter1, reason);
}

void toData(DiscCallBack& callBack, const AppMessage::Ptr& message)
{
    const juce::MemoryBlock* data = ApiMessageHelper::byteArrayOf(message, ApiMessageHelper::KEY_DATA);
    if (data == nullptr)
        return dropped(message, __LINE__, "no bytes under \"data\"");
    callBack.onDiscData(message->intParameter2, *data);
}

void toInfo(DiscCallBack& callBack, const AppMessage::Ptr& message)
{
    auto bundle = ApiMessageHelper::bundleOf(message);
    if (bundle == nullptr)
        return dropped(message, __LINE__, "no Bundle attached");
    callBack.onDiscInfo(InfoMedia::deBundle(bundle));
}

void toText(DiscCallBack& callBack, const AppMessage::Ptr& message)
{
    if (ApiMessageHelper::formatOf(message) != RemoteObjFormat::kString)
        return dropped(message, __LINE__, "no text attached");
    callBack.onDiscText(message->intParameter2, RemoteObjFormat::getString(ApiMessageHelper::bundleOf(message)));
}

void toSetupData(DiscSetupDataCallBack& callBack, const AppMessage::Ptr& message)
{
    const int id = message->intParameter2;
    auto value = ApiMessageHelper::bundleOf(message);
    switch (ApiMessageHelper::formatOf(message))
    {
    case RemoteObjFormat::kInt:
        return callBack.onSetupValue(id, RemoteObjFormat::getInt(value));
    case RemoteObjFormat::kString:
        return callBack.onSetupText(id, RemoteObjFormat::getString(value));
    case RemoteObjFormat::kByteArray:
        if (const juce::MemoryBlock* bytes = RemoteObjFormat::getByteArray(value))
            return callBack.onSetupData(id, *bytes);
        break;
    default:
        break;
    }
    dropped(message, __LINE__, "no number, text or bytes attached");
}

using CallBack = DiscCallBack;
const ApiDispatch::OwnCode<CallBack> kOwnCodes[] = {
    {ApiCode::kDisc, &ApiDispatch::messageAndCode<CallBack, &CallBack::onDiscMessage>},
    {ApiCode::kMediaList, &ApiDispatch::arguments<CallBack, &CallBack::onDiscState>},
    {ApiCode::kPGN, toData},
    {ApiCode::kMediaInfo, toInfo},
    {ApiCode::kDiscText, toText}};
const ApiDispatch::OwnCode<DiscSetupDataCallBack> kSetupDataCodes[] = {{ApiCode::kDiscSetupData, toSetupData}};
} // namespace

DiscApi* DiscApi::getInstance()
{
    static auto* instance = new DiscApi(); // lives as long as the process: never torn down at exit
    return instance;
}

DiscApi::DiscApi() : ApplicationApi(Pubhead::eAppType::AppDisc, true)
{
    adoptResponse(std::make_unique<GeneralResponseEx>(*this));
}

DiscApi::DiscApi(const DiscApi& other) : ApplicationApi(other), m_pSetupDataCallBack(other.m_pSetupDataCallBack)
{
    adoptResponse(std::make_unique<GeneralResponseEx>(*this));
}

void DiscApi::sendToInfoBar(const InfoMedia::Ptr& info)
{
    ApiCommand::sendToInfoBar(*this, ServiceCode::kInfoBarMedia, info);
}

void DiscApi::remoteCallBack(const AppMessage::Ptr& message)
{
    if (ApiDispatch::deliverOwnCode(kOwnCodes, m_pCallBack, message)
        || ApiDispatch::deliverOwnCode(kSetupDataCodes, m_pSetupDataCallBack, message))
        return;
    getGeneralService()->processMessage(message);
}
