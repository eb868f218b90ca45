// A JUCE application that links LmCom: one JUCE, its own, serves both.
#include <LmCom.h>
#include <juce_core/juce_core.h>
#include <juce_events/juce_events.h>

int main()
{
    juce::ScopedJuceInitialiser_GUI juce;
    auto message = RemoteMessage::obtain();
    message->code = 1745;
    message->object = RemoteObjFormat::formatString("juce").get();
    auto parcel = message->writeToParcel();
    auto copy = Parcel::obtain();
    copy->fillData(parcel->data(), parcel->dataSize());
    auto back = createFromParcel(copy.get());
    auto* rebuilt = dynamic_cast<RemoteMessage*>(back.get());
    const bool ok = rebuilt != nullptr && rebuilt->code == 1745
                    && RemoteObjFormat::getString(Bundle::Ptr(dynamic_cast<Bundle*>(rebuilt->object.get()))) == "juce"
                    && juce::MessageManager::getInstanceWithoutCreating() != nullptr;
    std::printf("JUCE consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
