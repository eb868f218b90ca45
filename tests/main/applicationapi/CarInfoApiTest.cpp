// CarInfoApi: its request frames byte for byte, answer frames reaching the callback as (item,
// value) pairs, hostile payloads and its answers to the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/CarInfoApi.h"

using namespace LmComTesting;

namespace
{
using CarInfoApiTest = ApiTest;

class CarInfo : public Recorder<CarInfoCallBack>
{
public:
    void onCarInfoValue(int item, int value) override { log.add("value", item, value); }
};

// What the main service receives for a request frame: code 74, param1 the type AppCarInfo.
std::string frame(const std::string& bytes)
{
    return "74 " + std::to_string(Pubhead::eAppType::AppCarInfo) + " 0 {data=[" + bytes + "]}";
}
} // namespace

TEST_F(CarInfoApiTest, RequestFramesAnswersAndNotifications)
{
    RecordingCallBacks callBacks;
    CarInfoApi api(&callBacks, &callBacks);
    expectConstructorCallBacks(api, callBacks);
    CarInfo carInfo;
    api.bindCallBack(&carInfo);

    expectCommands(api, {{[&] { api.GetRVMeter(); }, frame("00 00")},
                         {[&] { api.ReqCompass(); }, frame("11 00")},
                         {[&] { api.ReStudyCompass(); }, frame("12 00")},
                         {[&] { api.ExitCompass(); }, frame("13 00")},
                         {[&] { api.GetCompassOffset(); }, frame("14 00")},
                         {[&] { api.SetCompassOffset(0x1F7); }, frame("15 01 F7")},
                         {[&] { api.SetCompassOffset(-2); }, frame("15 01 FE")},
                         {[&] { api.GetAirPressureAndElevation(); }, frame("21 00")},
                         {[&] { api.SetAirPressure(0x123F2); }, frame("22 02 23 F2")},
                         {[&] { api.ReSetAirPressure(); }, frame("23 00")},
                         {[&] { api.ChangeElevation(0); }, frame("24 00")},
                         {[&] { api.ChangeElevation(1); }, frame("25 00")},
                         {[&] { api.ChangeElevation(-1); }, frame("25 00")},
                         {[&] { api.GetOutTemperature(); }, frame("31 00")},
                         {[&] { api.GetCanData(); }, frame("41 00")},
                         {[&] { api.ClearMaintenanceHint(); }, frame("42 00")},
                         {[&] { api.ResetMiddleOilExpend(); }, frame("43 00")},
                         {[&] { api.ResetMiddleCarSpeed(); }, frame("44 00")},
                         {[&] { api.GetAllWheelData(); }, frame("61 01 00")},
                         {[&] { api.EnterWheelStudy(); }, frame("62 01 00")},
                         {[&] { api.DeleteCurWheelToNextStudy(); }, frame("63 01 00")},
                         {[&] { api.SkipCurWheelEnterFLStudy(); }, frame("64 01 01")},
                         {[&] { api.SkipCurWheelEnterFRStudy(); }, frame("64 01 02")},
                         {[&] { api.SkipCurWheelEnterRRStudy(); }, frame("64 01 03")},
                         {[&] { api.SkipCurWheelEnterRLStudy(); }, frame("64 01 04")},
                         {[&] { api.SkipCurWheelEnterSpareStudy(); }, frame("64 01 05")},
                         {[&] { api.ExitWheelStudy(); }, frame("65 01 00")},
                         {[&] { api.EnterWheelPressureStudy(); }, frame("66 01 00")},
                         {[&] { api.ExitWheelPressureStudy(); }, frame("67 01 00")},
                         {[&] { api.QueryCurLowPressurePercent(); }, frame("69 01 00")},
                         {[&] { api.SetLowPressurePercent(200); }, frame("6A 01 C8")},
                         {[&] { api.SwitFontToRear(); }, frame("6B 01 01")},
                         {[&] { api.SwitFontToRearCross(); }, frame("6B 01 02")},
                         {[&] { api.SwitFLToSpare(); }, frame("6C 01 01")},
                         {[&] { api.SwitFRToSpare(); }, frame("6C 01 02")},
                         {[&] { api.SwitRRToSpare(); }, frame("6C 01 03")},
                         {[&] { api.SwitRLToSpare(); }, frame("6C 01 04")},
                         {[&] { api.EnterTestMode(); }, frame("6D 01 00")},
                         {[&] { api.sendMsgToMain(5, -6); }, "1150 5 -6"}});

    // Answer frames with any arguments; the decoding itself is CarInfoDecoder's.
    expectIncoming(api, carInfo.log,
                   {{74, 7, -1, dataBundle({0x61, 0x04, 0x03, 0x00, 0x1E, 0x41}),
                     "value 68 0; value 29 16843009; value 30 30; value 31 65"},
                    {74, 0, 0, dataBundle({0x69, 0x01, 0x03}), "value 57 60"},
                    {74, 0, 0, dataBundle({0x69, 0x01, 0x0A}), ""},
                    {74, 0, 0, dataBundle({0x61, 0x04, 0x03}), ""},
                    {74, 0, 0, dataBundle({}), ""},
                    {1150, 1, 2, dataBundle({0x13, 0x00}), ""}});
    expectHostileDropped(api, carInfo.log, {74});
    expectCommonNotifications(api, carInfo.log, "command", true);

    // Without a callback every value vanishes.
    api.bindCallBack(nullptr);
    expectIncoming(api, carInfo.log, {{74, 0, 0, dataBundle({0x13, 0x00}), ""}});
}
