// The car information API: its request frames byte for byte, and answer frames reaching the
// callback as (item, value) pairs.
#include "support/AppPeer.h"

#include <main/applicationapi/CarInfoApi.h>

using namespace LmComTesting;

namespace
{
constexpr auto kCarInfo = Pubhead::eAppType::AppCarInfo;

class RecordingCarInfo : public CarInfoCallBack
{
public:
    void onGeneralCommand(int p1, int p2) override
    {
        calls.push_back("general " + std::to_string(p1) + " " + std::to_string(p2));
    }
    void onCarInfoValue(int item, int value) override
    {
        calls.push_back(std::to_string(item) + "=" + std::to_string(value));
    }
    std::vector<std::string> calls;
};

using CarInfoApiTest = FrameworkTest;

Bundle::Ptr frameBundle(const std::string& hexText)
{
    auto bundle = Bundle::obtain();
    const auto bytes = unhex(hexText);
    bundle->putByteArray("data", juce::MemoryBlock(bytes.data(), bytes.size()));
    return bundle;
}
} // namespace

TEST_F(CarInfoApiTest, RequestFramesGoToTheMainServiceByteForByte)
{
    struct Request
    {
        std::function<void(CarInfoApi&)> call;
        const char* frame;
    };
    const std::vector<Request> requests = {
        {[](CarInfoApi& a) { a.GetRVMeter(); }, "00 00"},
        {[](CarInfoApi& a) { a.ReqCompass(); }, "11 00"},
        {[](CarInfoApi& a) { a.ReStudyCompass(); }, "12 00"},
        {[](CarInfoApi& a) { a.ExitCompass(); }, "13 00"},
        {[](CarInfoApi& a) { a.GetCompassOffset(); }, "14 00"},
        {[](CarInfoApi& a) { a.SetCompassOffset(0x1F7); }, "15 01 F7"},
        {[](CarInfoApi& a) { a.SetCompassOffset(-2); }, "15 01 FE"},
        {[](CarInfoApi& a) { a.GetAirPressureAndElevation(); }, "21 00"},
        {[](CarInfoApi& a) { a.SetAirPressure(0x123F2); }, "22 02 23 F2"},
        {[](CarInfoApi& a) { a.ReSetAirPressure(); }, "23 00"},
        {[](CarInfoApi& a) { a.ChangeElevation(0); }, "24 00"},
        {[](CarInfoApi& a) { a.ChangeElevation(1); }, "25 00"},
        {[](CarInfoApi& a) { a.ChangeElevation(-1); }, "25 00"},
        {[](CarInfoApi& a) { a.GetOutTemperature(); }, "31 00"},
        {[](CarInfoApi& a) { a.GetCanData(); }, "41 00"},
        {[](CarInfoApi& a) { a.ClearMaintenanceHint(); }, "42 00"},
        {[](CarInfoApi& a) { a.ResetMiddleOilExpend(); }, "43 00"},
        {[](CarInfoApi& a) { a.ResetMiddleCarSpeed(); }, "44 00"},
        {[](CarInfoApi& a) { a.GetAllWheelData(); }, "61 01 00"},
        {[](CarInfoApi& a) { a.EnterWheelStudy(); }, "62 01 00"},
        {[](CarInfoApi& a) { a.DeleteCurWheelToNextStudy(); }, "63 01 00"},
        {[](CarInfoApi& a) { a.SkipCurWheelEnterFLStudy(); }, "64 01 01"},
        {[](CarInfoApi& a) { a.SkipCurWheelEnterFRStudy(); }, "64 01 02"},
        {[](CarInfoApi& a) { a.SkipCurWheelEnterRRStudy(); }, "64 01 03"},
        {[](CarInfoApi& a) { a.SkipCurWheelEnterRLStudy(); }, "64 01 04"},
        {[](CarInfoApi& a) { a.SkipCurWheelEnterSpareStudy(); }, "64 01 05"},
        {[](CarInfoApi& a) { a.ExitWheelStudy(); }, "65 01 00"},
        {[](CarInfoApi& a) { a.EnterWheelPressureStudy(); }, "66 01 00"},
        {[](CarInfoApi& a) { a.ExitWheelPressureStudy(); }, "67 01 00"},
        {[](CarInfoApi& a) { a.QueryCurLowPressurePercent(); }, "69 01 00"},
        {[](CarInfoApi& a) { a.SetLowPressurePercent(200); }, "6A 01 C8"},
        {[](CarInfoApi& a) { a.SwitFontToRear(); }, "6B 01 01"},
        {[](CarInfoApi& a) { a.SwitFontToRearCross(); }, "6B 01 02"},
        {[](CarInfoApi& a) { a.SwitFLToSpare(); }, "6C 01 01"},
        {[](CarInfoApi& a) { a.SwitFRToSpare(); }, "6C 01 02"},
        {[](CarInfoApi& a) { a.SwitRRToSpare(); }, "6C 01 03"},
        {[](CarInfoApi& a) { a.SwitRLToSpare(); }, "6C 01 04"},
        {[](CarInfoApi& a) { a.EnterTestMode(); }, "6D 01 00"},
    };
    CarInfoApi api(nullptr, nullptr);
    // Before the connection they wait, in order; the last one goes at once afterwards.
    for (size_t i = 0; i + 1 < requests.size(); ++i)
        requests[i].call(api);
    api.sendMsgToMain(5, -6);
    ASSERT_TRUE(waitFor(ServiceCode::kConnectRequest, 1));
    postToApp(kCarInfo, ServiceCode::kConnectAck, 0, 0);
    ASSERT_TRUE(waitFor(CarInfoApi::kCarInfoFrame, (int)requests.size() - 1));
    requests.back().call(api);
    ASSERT_TRUE(waitFor(CarInfoApi::kCarInfoFrame, (int)requests.size()));

    const auto got = main.requests();
    ASSERT_EQ(got.size(), requests.size() + 1);
    for (size_t i = 0, r = 0; i < got.size(); ++i)
    {
        if (got[i].code == CarInfoApi::kCarInfoToMain)
        {
            EXPECT_EQ(i, requests.size() - 1); // in its place, after the buffered frames
            EXPECT_EQ(got[i].param1 * 100 + got[i].param2, 5 * 100 - 6);
            EXPECT_EQ(got[i].bundle, nullptr);
            continue;
        }
        SCOPED_TRACE(requests[r].frame);
        EXPECT_EQ(got[i].code, CarInfoApi::kCarInfoFrame);
        EXPECT_EQ(got[i].param1, kCarInfo);
        EXPECT_EQ(got[i].param2, 0);
        ASSERT_NE(got[i].bundle, nullptr);
        auto* bytes = got[i].bundle->getByteArray("data");
        ASSERT_NE(bytes, nullptr);
        EXPECT_EQ(hex(bytes->getData(), (int)bytes->getSize()), requests[r++].frame);
    }
}

TEST_F(CarInfoApiTest, AnswersReachTheCallBackAndAnythingElseIsDropped)
{
    RecordingCarInfo callBack;
    RecordingCallBacks view;
    CarInfoApi api(nullptr, &view);
    postToApp(kCarInfo, ServiceCode::kConnectAck, 0, 0);

    // Without a callback every value vanishes.
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 0, 0, frameBundle("13 00").get());
    postToApp(kCarInfo, ServiceCode::kViewShow, 3, 0);
    ASSERT_TRUE(loop->runUntil([&] { return !view.calls.empty(); }));
    api.bindCallBack(&callBack);

    // Not a frame: no payload, another class, no "data", "data" of another type.
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 1, 2);
    auto array = ParcelableArray::obtain();
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 0, 0, array.get());
    auto other = Bundle::obtain();
    other->putInt("frame", 0x13);
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 0, 0, other.get());
    auto text = Bundle::obtain();
    text->putString("data", "13 00");
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 0, 0, text.get());
    // Frames, with any arguments; an empty one gives nothing; 1322 goes to the callback.
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 0, 0, frameBundle("").get());
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 7, -1, frameBundle("61 04 03 00 1E 41").get());
    postToApp(kCarInfo, ServiceCode::kGeneralCommand, 9, -9);
    postToApp(kCarInfo, CarInfoApi::kCarInfoFrame, 0, 0, frameBundle("69 01 03").get());
    ASSERT_TRUE(loop->runUntil([&] { return callBack.calls.size() >= 6; }));
    loop->runFor(50);
    EXPECT_EQ(callBack.calls,
              (std::vector<std::string>{"68=0", "29=16843009", "30=30", "31=65", "general 9 -9", "57=60"}));
    EXPECT_EQ(view.calls, std::vector<std::string>{"show 3 1725"});
}
