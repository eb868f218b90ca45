#include "main/applicationapi/CarInfoApi.h"

#include "main/applicationapi/ApiCodes.h"
#include "main/applicationapi/ApiMessageHelper.h"
#include "main/applicationapi/ForwardingResponse.h"

#include <limits>

class CarInfoApi::GeneralResponseEx : public ForwardingResponse<CarInfoCallBack, Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

namespace
{
const char* const kSource = "applicationapi/CarInfoApi";
}

CarInfoApi::CarInfoApi(AppCmdCallBack* appCmdCallBack, ViewCallBack* viewCallBack)
    : ApplicationApi(Pubhead::eAppType::AppCarInfo, true)
{
    adoptResponse<GeneralResponseEx>();
    bindAppCmdCallBack(appCmdCallBack);
    bindViewCallBack(viewCallBack);
}

CarInfoApi::CarInfoApi(const CarInfoApi& other) : ApplicationApi(other), CarInfoDecoder(other)
{
    adoptResponse<GeneralResponseEx>();
}

void CarInfoApi::remoteCallBack(const AppMessage::Ptr& message)
{
    JUCE_ASSERT_MESSAGE_THREAD
    if (message == nullptr)
        return;
    if (message->intParameter1 != ApiCode::kCarData)
    {
        getGeneralService()->processMessage(message);
        return;
    }
    // Any arguments; without a callback the values would vanish anyway.
    if (m_pCallBack == nullptr)
        return;
    const juce::MemoryBlock* frame = ApiMessageHelper::byteArrayOf(message, ApiMessageHelper::KEY_DATA);
    if (frame == nullptr || frame->getSize() > (size_t)std::numeric_limits<int>::max())
        return ApiMessageHelper::logDropped(kSource, __LINE__, "CarInfoApi", message->intParameter1,
                                            "no bytes under \"data\"");
    procCarInfoMsg(static_cast<const unsigned char*>(frame->getData()), (int)frame->getSize());
}

void CarInfoApi::postMsgToCarInfo(int item, int value)
{
    if (m_pCallBack != nullptr)
        m_pCallBack->onCarInfoValue(item, value);
}

void CarInfoApi::copyDataToHost(const unsigned char* bytes, int length)
{
    auto bundle = Bundle::obtain();
    bundle->putByteArray(ApiMessageHelper::KEY_DATA, juce::MemoryBlock(bytes, (size_t)length));
    postMessage(ApiCode::kCarData, getAppType(), 0, bundle.get());
}

void CarInfoApi::sendFrame(std::initializer_list<unsigned char> frame)
{
    copyDataToHost(frame.begin(), (int)frame.size());
}

void CarInfoApi::sendMsgToMain(int param1, int param2)
{
    postMessage(ApiCode::kCarInfoCommand, param1, param2, nullptr);
}

// Request frames: command, number of data bytes, data.
void CarInfoApi::GetRVMeter()
{
    sendFrame({0x00, 0x00});
}
void CarInfoApi::ReqCompass()
{
    sendFrame({0x11, 0x00});
}
void CarInfoApi::ReStudyCompass()
{
    sendFrame({0x12, 0x00});
}
void CarInfoApi::ExitCompass()
{
    sendFrame({0x13, 0x00});
}
void CarInfoApi::GetCompassOffset()
{
    sendFrame({0x14, 0x00});
}
void CarInfoApi::SetCompassOffset(int offset)
{
    sendFrame({0x15, 0x01, (unsigned char)(offset & 0xFF)});
}
void CarInfoApi::GetAirPressureAndElevation()
{
    sendFrame({0x21, 0x00});
}
void CarInfoApi::SetAirPressure(int value)
{
    sendFrame({0x22, 0x02, (unsigned char)((value >> 8) & 0xFF), (unsigned char)(value & 0xFF)});
}
void CarInfoApi::ReSetAirPressure()
{
    sendFrame({0x23, 0x00});
}
void CarInfoApi::ChangeElevation(int direction)
{
    sendFrame({(unsigned char)(direction == 0 ? 0x24 : 0x25), 0x00});
}
void CarInfoApi::GetOutTemperature()
{
    sendFrame({0x31, 0x00});
}
void CarInfoApi::GetCanData()
{
    sendFrame({0x41, 0x00});
}
void CarInfoApi::ClearMaintenanceHint()
{
    sendFrame({0x42, 0x00});
}
void CarInfoApi::ResetMiddleOilExpend()
{
    sendFrame({0x43, 0x00});
}
void CarInfoApi::ResetMiddleCarSpeed()
{
    sendFrame({0x44, 0x00});
}
void CarInfoApi::GetAllWheelData()
{
    sendFrame({0x61, 0x01, 0x00});
}
void CarInfoApi::EnterWheelStudy()
{
    sendFrame({0x62, 0x01, 0x00});
}
void CarInfoApi::DeleteCurWheelToNextStudy()
{
    sendFrame({0x63, 0x01, 0x00});
}
void CarInfoApi::SkipCurWheelEnterFLStudy()
{
    sendFrame({0x64, 0x01, 0x01});
}
void CarInfoApi::SkipCurWheelEnterFRStudy()
{
    sendFrame({0x64, 0x01, 0x02});
}
void CarInfoApi::SkipCurWheelEnterRRStudy()
{
    sendFrame({0x64, 0x01, 0x03});
}
void CarInfoApi::SkipCurWheelEnterRLStudy()
{
    sendFrame({0x64, 0x01, 0x04});
}
void CarInfoApi::SkipCurWheelEnterSpareStudy()
{
    sendFrame({0x64, 0x01, 0x05});
}
void CarInfoApi::ExitWheelStudy()
{
    sendFrame({0x65, 0x01, 0x00});
}
void CarInfoApi::EnterWheelPressureStudy()
{
    sendFrame({0x66, 0x01, 0x00});
}
void CarInfoApi::ExitWheelPressureStudy()
{
    sendFrame({0x67, 0x01, 0x00});
}
void CarInfoApi::QueryCurLowPressurePercent()
{
    sendFrame({0x69, 0x01, 0x00});
}
void CarInfoApi::SetLowPressurePercent(unsigned char percent)
{
    sendFrame({0x6A, 0x01, percent});
}
void CarInfoApi::SwitFontToRear()
{
    sendFrame({0x6B, 0x01, 0x01});
}
void CarInfoApi::SwitFontToRearCross()
{
    sendFrame({0x6B, 0x01, 0x02});
}
void CarInfoApi::SwitFLToSpare()
{
    sendFrame({0x6C, 0x01, 0x01});
}
void CarInfoApi::SwitFRToSpare()
{
    sendFrame({0x6C, 0x01, 0x02});
}
void CarInfoApi::SwitRRToSpare()
{
    sendFrame({0x6C, 0x01, 0x03});
}
void CarInfoApi::SwitRLToSpare()
{
    sendFrame({0x6C, 0x01, 0x04});
}
void CarInfoApi::EnterTestMode()
{
    sendFrame({0x6D, 0x01, 0x00});
}
