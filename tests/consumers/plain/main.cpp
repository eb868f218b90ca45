// A program that does not compile JUCE: it takes JUCE from the package.
#include <LmCom.h>

#include <cstdio>

int main()
{
    auto bundle = Bundle::obtain();
    bundle->putString("action", "plain");
    auto parcel = bundle->writeToParcel();
    auto copy = Parcel::obtain();
    copy->fillData(parcel->data(), parcel->dataSize());
    auto back = createFromParcel(copy.get());
    auto* rebuilt = dynamic_cast<Bundle*>(back.get());
    const bool ok = rebuilt != nullptr && rebuilt->getString("action", {}) == "plain"
                    && juce::String(getDestName(Pubhead::eAppType::AppMain)) == "NavigRecive";
    std::printf("plain consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
