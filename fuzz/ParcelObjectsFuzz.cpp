// Any bytes as a Parcel of objects: rebuild each with the object registry, read every value
// back through the getters and print it with both of the tool's printers.
#include "JsonWriter.h"
#include "ObjectJson.h"
#include "ObjectTree.h"

#include <LmCom.h>

namespace
{
void readEverything(Parcelable& object, int depth)
{
    if (depth > 8)
        return;
    if (auto* bundle = dynamic_cast<Bundle*>(&object))
    {
        for (juce::HashMap<juce::String, juce::var*>::Iterator it(bundle->getValueMap()); it.next();)
        {
            const auto key = it.getKey();
            bundle->getInt(key, 0);
            bundle->getBool(key, false);
            bundle->getDouble(key, 0);
            bundle->getString(key, {});
            bundle->getByteArray(key);
        }
        for (juce::HashMap<juce::String, Parcelable::Ptr>::Iterator it(bundle->getObjectMap()); it.next();)
        {
            bundle->getBundle(it.getKey());
            if (auto nested = bundle->getParcelable(it.getKey()))
                readEverything(*nested, depth + 1);
        }
        bundle->clone();
    }
    else if (auto* message = dynamic_cast<RemoteMessage*>(&object))
    {
        if (message->object != nullptr)
            readEverything(*message->object, depth + 1);
    }
    else if (auto* array = dynamic_cast<ParcelableArray*>(&object))
    {
        for (const auto& item : array->getParcelableVector())
            if (item != nullptr)
                readEverything(*item, depth + 1);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    auto parcel = Parcel::obtain();
    parcel->fillData(data, (int)size);
    for (int objects = 0; objects < 16 && parcel->dataAvail() > 0; ++objects)
    {
        auto object = createFromParcel(parcel.get());
        if (object == nullptr)
            break;
        readEverything(*object, 0);
        std::string tree, json;
        LmComTool::ObjectTree::append(tree, *object, 0);
        LmComTool::JsonWriter writer(json);
        LmComTool::ObjectJson::write(writer, *object);
        object->writeToParcel(); // and back to bytes
    }
    return 0;
}
