// Builds a RemoteMessage with a Bundle, flattens it into a Parcel, prints the bytes and reads
// the message back.
#include <LmCom.h>

#include <cstdio>

int main()
{
    auto bundle = Bundle::obtain();
    bundle->putString("Title", "Radio 1");
    bundle->putInt("SourceID", 5);

    auto message = RemoteMessage::obtain();
    message->code = 1184;
    message->param1 = Pubhead::eAppType::AppRadio;
    message->object = bundle.get();

    auto parcel = message->writeToParcel();
    std::printf("RemoteMessage, %d bytes:\n", parcel->dataSize());
    for (int i = 0; i < parcel->dataSize(); ++i)
        std::printf("%02X%s", parcel->data()[i], (i % 16 == 15) ? "\n" : " ");
    std::printf("\n");

    auto copy = Parcel::obtain();
    copy->fillData(parcel->data(), parcel->dataSize());
    auto object = createFromParcel(copy.get());
    auto* rebuilt = dynamic_cast<RemoteMessage*>(object.get());
    if (rebuilt == nullptr)
        return 1;
    auto payload = dynamic_cast<Bundle*>(rebuilt->object.get());
    std::printf("read back: code %d param1 %d (%s) sender %d, Title \"%s\", SourceID %d\n", rebuilt->code,
                rebuilt->param1, appTypeName(rebuilt->param1), rebuilt->sender,
                payload != nullptr ? payload->getString("Title", {}).toRawUTF8() : "",
                payload != nullptr ? payload->getInt("SourceID", -1) : -1);
    return 0;
}
