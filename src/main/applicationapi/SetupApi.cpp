#include "main/applicationapi/SetupApi.h"

#include "Message/RemoteObjFormat.h"
#include "Utils/SettingHelper.h"
#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/ForwardingResponse.h"

class SetupApi::GeneralResponseEx : public ForwardingResponse<SetupCallBack, Forward::notify | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

SetupApi::SetupApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack)
    : ApplicationApi(Pubhead::eAppType::AppSetup, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
}

SetupApi::SetupApi(const SetupApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void SetupApi::loadFactory()
{
    postMessage(ApiCode::kSetupCommand, kLoadFactory, 0, nullptr);
}

void SetupApi::superFactory()
{
    postMessage(ApiCode::kSetupCommand, kSuperFactory, 0, nullptr);
}

void SetupApi::remoteCallBack(const AppMessage::Ptr& message)
{
    JUCE_ASSERT_MESSAGE_THREAD;
    if (message == nullptr)
        return;
    if (message->intParameter1 != ApiCode::kSetup)
    {
        getGeneralService()->processMessage(message);
        return;
    }
    if (m_pCallBack == nullptr)
        return;
    SetupCallBack& callBack = *m_pCallBack;
    const auto bundle = ApiMessageHelper::bundleOf(message);
    if (message->intParameter2 == kSettingChanged && bundle != nullptr)
    {
        const int id = message->intParameter3;
        if (SettingHelper::isSettingValueString(id))
            callBack.onSettingString(id, RemoteObjFormat::getString(bundle));
        else
            callBack.onSettingInt(id, RemoteObjFormat::getInt(bundle));
    }
    // A changed setting reaches the callback twice, decoded and then raw: deliberate, setup
    // screens rely on the raw one too.
    callBack.onSetupMessage(message);
}
