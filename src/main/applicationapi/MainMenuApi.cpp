#include "main/applicationapi/MainMenuApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/ForwardingResponse.h"

class MainMenuApi::GeneralResponseEx : public ForwardingResponse<MainMenuCallBack, Forward::notify | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
const juce::String kKeyState("state");
const juce::String kKeyNormalSource("normalSrc");
const juce::String kKeyRearSource("rearSrc");
const juce::String kKeyFrontSource("frontSrc");
const juce::String kKeyTime("time");

const unsigned char* bytesOf(const juce::MemoryBlock& block)
{
    return static_cast<const unsigned char*>(block.getData());
}

void deliverSourceStates(MainMenuCallBack& callBack, const AppMessage::Ptr& message)
{
    const auto bundle = ApiMessageHelper::bundleOf(message);
    if (bundle == nullptr)
        return;
    if (const auto* states = ApiMessageHelper::byteArrayOf(message, kKeyState))
        callBack.onSourceStates(bytesOf(*states), (int)states->getSize());
    // Both go to onSource, the rear one last: deliberate, the main menu relies on that order.
    callBack.onSource(bundle->getInt(kKeyNormalSource, 0));
    callBack.onSource(bundle->getInt(kKeyRearSource, 0));
    callBack.onFrontSource(bundle->getInt(kKeyFrontSource, 0));
}

void deliverInfoSource(MainMenuCallBack& callBack, const AppMessage::Ptr& message)
{
    const auto bundle = ApiMessageHelper::bundleOf(message);
    if (bundle == nullptr)
        return;
    if (auto info = InfoSource::deBundle(bundle))
        callBack.onInfoSource(info);
}

void deliverAppList(MainMenuCallBack& callBack, const AppMessage::Ptr& message)
{
    const auto* data = ApiMessageHelper::byteArrayOf(message, ApiMessageHelper::KEY_DATA);
    if (data == nullptr)
        return;
    const int time = ApiMessageHelper::bundleOf(message)->getInt(kKeyTime, 0);
    callBack.onAppList(bytesOf(*data), (int)data->getSize(), time);
}
} // namespace

MainMenuApi::MainMenuApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack, MainMenuCallBack* callBack)
    : ApplicationApi(Pubhead::eAppType::AppMainMenu, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(cmdCallBack);
    bindViewCallBack(viewCallBack);
    bindCallBack(callBack);
}

MainMenuApi::MainMenuApi(const MainMenuApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void MainMenuApi::command(int subCommand, int value)
{
    postMessage(ApiCode::kMainMenuCommand, subCommand, value, nullptr);
}

void MainMenuApi::launchAndroidApp(Pubhead::eAppServiceType::EnumTypeTag service)
{
    command(kLaunchAndroidApp, service);
}

void MainMenuApi::launchCarApp(Pubhead::eAppServiceType::EnumTypeTag service)
{
    command(kLaunchCarApp, service);
}

void MainMenuApi::getAppState()
{
    command(kGetAppState, 0);
}

void MainMenuApi::enterStandby()
{
    command(kEnterStandby, 0);
}

void MainMenuApi::setTemporaryDimmer()
{
    command(kSetTemporaryDimmer, 0);
}

void MainMenuApi::FouceCarApp(Pubhead::eAppServiceType::EnumTypeTag service)
{
    command(kFouceCarApp, service);
}

void MainMenuApi::remoteCallBack(const AppMessage::Ptr& message)
{
    JUCE_ASSERT_MESSAGE_THREAD;
    if (message == nullptr)
        return;
    if (message->intParameter1 != ApiCode::kMainMenu)
    {
        getGeneralService()->processMessage(message);
        return;
    }
    // Code 1174 is this API's alone: whatever its sub-code, it never reaches the common dispatch.
    if (m_pCallBack == nullptr)
        return;
    MainMenuCallBack& callBack = *m_pCallBack;
    const int arg2 = message->intParameter3;
    switch (message->intParameter2)
    {
    case kSource:
        callBack.onSource(arg2);
        break;
    case kSourceStates:
        deliverSourceStates(callBack, message);
        break;
    case kSourceFlag:
        // The upper half as a signed number (arithmetic shift), and whether the lower half is set.
        callBack.onSourceFlag(arg2 >> 16, (arg2 & 0xFFFF) != 0);
        break;
    case kMenuValue:
        callBack.onMenuValue(arg2);
        break;
    case kMenuEvent:
        callBack.onMenuEvent();
        break;
    case kInfoSource:
        deliverInfoSource(callBack, message);
        break;
    case kFrontSource:
        callBack.onFrontSource(arg2);
        break;
    case kAppList:
        deliverAppList(callBack, message);
        break;
    default: // kUnused and sub-codes outside 1 to 9
        break;
    }
}
