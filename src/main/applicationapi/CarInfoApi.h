#pragma once

#include "main/applicationapi/AppServiceApi.h"
#include "main/applicationapi/CarInfoCallBack.h"
#include "main/applicationapi/CarInfoDecoder.h"

#include <initializer_list>
#include <memory>

/** The API of the car information application (AppCarInfo).

    The request methods send one frame each to the car's host controller, through the main
    service: code 74, param1 the application's type, the frame's bytes under "data" of a Bundle
    (posted at once when connected, buffered until the connection otherwise). The answers come
    back as code 74 with the same payload; each is decoded (CarInfoDecoder) and every value goes
    to the bound CarInfoCallBack as (item, value). A code 74 without a Bundle holding bytes under
    "data" is dropped; other codes go to the common dispatch. Wheels are numbered as in the
    frames: 1 front left, 2 front right, 3 rear right, 4 rear left, 5 spare.

    Message thread only, like AppServiceApi. The method names are the established ones, kept
    as they are (SwitFontToRear included).
*/
class CarInfoApi : public AppServiceApi, private CarInfoDecoder
{
public:
    /** Frames to and from the host controller. */
    static constexpr int kCarInfoFrame = 74;
    /** sendMsgToMain. */
    static constexpr int kCarInfoToMain = 1150;

    /** The callbacks are not owned; either may be null. */
    CarInfoApi(AppCmdCallBack* appCmdCallBack, ViewCallBack* viewCallBack);
    CarInfoApi(const CarInfoApi& other);
    ~CarInfoApi() override;

    /** Replaces the bound callback; null unbinds (decoded values are then dropped). */
    void bindCallBack(CarInfoCallBack* callBack) { m_pCallBack = callBack; }
    /** Code 1150 with the two values. */
    void sendMsgToMain(int param1, int param2);

    void GetRVMeter();
    void ReqCompass();
    void ReStudyCompass();
    void ExitCompass();
    void GetCompassOffset();
    /** Sends the low byte of offset. */
    void SetCompassOffset(int offset);
    void GetAirPressureAndElevation();
    /** Sends bits 15..0 of value, high byte first. */
    void SetAirPressure(int value);
    void ReSetAirPressure();
    /** Down (0x24) for direction 0, up (0x25) for any other. */
    void ChangeElevation(int direction);
    void GetOutTemperature();
    void GetCanData();
    void ClearMaintenanceHint();
    void ResetMiddleOilExpend();
    void ResetMiddleCarSpeed();
    void GetAllWheelData();
    void EnterWheelStudy();
    void DeleteCurWheelToNextStudy();
    void SkipCurWheelEnterFLStudy();
    void SkipCurWheelEnterFRStudy();
    void SkipCurWheelEnterRRStudy();
    void SkipCurWheelEnterRLStudy();
    void SkipCurWheelEnterSpareStudy();
    void ExitWheelStudy();
    void EnterWheelPressureStudy();
    void ExitWheelPressureStudy();
    void QueryCurLowPressurePercent();
    void SetLowPressurePercent(unsigned char percent);
    void SwitFontToRear();
    void SwitFontToRearCross();
    void SwitFLToSpare();
    void SwitFRToSpare();
    void SwitRRToSpare();
    void SwitRLToSpare();
    void EnterTestMode();

private:
    /** Passes 1322 to the bound callback. */
    class GeneralResponseEx : public GeneralResponse
    {
    public:
        GeneralResponseEx(CarInfoApi* api, GeneralService* service) : GeneralResponse(service), m_pApi(api) {}
        void onGeneralCommand(int param1, int param2) override;

    private:
        CarInfoApi* m_pApi;
    };

    void remoteCallBack(const AppMessage::Ptr& message) override;
    void onCarInfoValue(const Value& value) override { postMsgToCarInfo(value.item, value.value); }
    void postMsgToCarInfo(int item, int value);
    void copyDataToHost(const unsigned char* bytes, int length);
    void sendFrame(std::initializer_list<unsigned char> frame);

    std::unique_ptr<GeneralResponseEx> m_pResponse;
    CarInfoCallBack* m_pCallBack = nullptr;
};
