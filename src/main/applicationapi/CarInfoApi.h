#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/CarInfoCallBack.h"
#include "main/applicationapi/CarInfoDecoder.h"

#include <initializer_list>

/** The API of the car information application (AppCarInfo).

    The request methods send one frame each to the car's host controller, through the main
    service: code 74, param1 the application's type, the frame's bytes under "data" of a Bundle
    (posted at once when connected, buffered until the connection otherwise). The answers come
    back as code 74 with the same payload; each is decoded (CarInfoDecoder) and every value goes
    to the bound CarInfoCallBack as (item, value), or nowhere when none is bound. A code 74
    without a Bundle holding bytes under "data" is dropped with a log line. 1322 goes to
    CarInfoCallBack::onGeneralCommand; everything else to the common dispatch. Wheels are numbered as in the
    frames: 1 front left, 2 front right, 3 rear right, 4 rear left, 5 spare.

    Message thread only, like AppServiceApi. The method names are the established ones, kept
    as they are (SwitFontToRear included).
*/
class CarInfoApi : public ApplicationApi<CarInfoCallBack>, private CarInfoDecoder
{
public:
    /** Connects at once; appCmdCallBack receives the command lines and viewCallBack the view
        messages (either may be null; neither is owned). */
    CarInfoApi(AppCmdCallBack* appCmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    CarInfoApi(const CarInfoApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    CarInfoApi& operator=(const CarInfoApi& other) = default;
    ~CarInfoApi() override = default;

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
    void remoteCallBack(const AppMessage::Ptr& message) override;
    void onCarInfoValue(const Value& value) override { postMsgToCarInfo(value.item, value.value); }
    void postMsgToCarInfo(int item, int value);
    void copyDataToHost(const unsigned char* bytes, int length);
    void sendFrame(std::initializer_list<unsigned char> frame);

    class GeneralResponseEx;
};
