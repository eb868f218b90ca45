// Serialization costs: a RemoteMessage carrying a 128-byte Bundle, written and rebuilt.
#include <LmCom.h>

#include <benchmark/benchmark.h>

namespace
{
RemoteMessage::Ptr makeMessage()
{
    auto bundle = Bundle::obtain();
    bundle->putInt("SourceID", 5);
    bundle->putString("Title", "Radio 1 FM 98.8");
    bundle->putString("Artist", "Someone");
    bundle->putDouble("Freq", 98.8);
    bundle->putBool("Stereo", true);
    auto message = RemoteMessage::obtain();
    message->code = 1184;
    message->param1 = 5;
    message->object = bundle.get();
    return message;
}

void BM_WriteMessage(benchmark::State& state)
{
    auto message = makeMessage();
    for (auto _ : state)
    {
        auto parcel = message->writeToParcel();
        benchmark::DoNotOptimize(parcel->data());
        parcel->recycle();
    }
}
BENCHMARK(BM_WriteMessage);

void BM_ReadMessage(benchmark::State& state)
{
    auto written = makeMessage()->writeToParcel();
    auto parcel = Parcel::obtain();
    for (auto _ : state)
    {
        parcel->fillData(written->data(), written->dataSize());
        auto object = createFromParcel(parcel.get());
        benchmark::DoNotOptimize(object.get());
        object->recycle();
    }
    state.counters["bytes"] = written->dataSize();
}
BENCHMARK(BM_ReadMessage);
} // namespace

BENCHMARK_MAIN();
