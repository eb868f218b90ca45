#include "support/TestSupport.h"

#include <LmCom.h>

#include <random>

namespace
{
Parcel::Ptr parcelOf(const std::vector<unsigned char>& bytes)
{
    auto p = Parcel::obtain();
    p->fillData(bytes.data(), (int)bytes.size());
    return p;
}
} // namespace

TEST(ParcelableTest, CreateFromParcelPeeksAtTheMagic)
{
    auto empty = Parcel::obtain();
    EXPECT_EQ(createFromParcel(empty.get()), nullptr);

    auto zeros = parcelOf({0, 0, 0, 0, 1});
    EXPECT_EQ(createFromParcel(zeros.get()), nullptr);
    EXPECT_EQ(zeros->dataPosition(), 0);

    // One byte left: the peek reads -1, no class matches, the cursor stays.
    auto oneLeft = parcelOf({1, 2, 3, 'B'});
    oneLeft->setDataPosition(3);
    EXPECT_EQ(createFromParcel(oneLeft.get()), nullptr);
    EXPECT_EQ(oneLeft->dataPosition(), 3);

    // Each class is found by its magic.
    for (auto object : {Parcelable::Ptr(Bundle::obtain().get()), Parcelable::Ptr(ParcelableArray::obtain().get()),
                        Parcelable::Ptr(RemoteMessage::obtain().get())})
    {
        auto written = object->writeToParcel();
        auto copy = Parcel::obtain();
        copy->fillData(written->data(), written->dataSize());
        auto rebuilt = createFromParcel(copy.get());
        ASSERT_NE(rebuilt, nullptr);
        EXPECT_EQ(rebuilt->getFlags(), object->getFlags());
        EXPECT_EQ(copy->dataAvail(), 0);
    }
}

TEST(ParcelableTest, DeepNestingIsRefusedInsteadOfExhaustingTheStack)
{
    // 5000 arrays, each holding the next: far deeper than any real message.
    auto p = Parcel::obtain();
    for (int i = 0; i < 5000; ++i)
    {
        p->writeInt(ParcelableMagic::kParcelableArray);
        p->writeInt(1);
    }
    p->writeInt(ParcelableMagic::kParcelableArray);
    p->writeInt(0);
    auto copy = Parcel::obtain();
    copy->fillData(p->data(), p->dataSize());
    auto top = createFromParcel(copy.get());
    ASSERT_NE(top, nullptr);

    int depth = 0;
    for (auto* level = dynamic_cast<ParcelableArray*>(top.get());
         level != nullptr && !level->getParcelableVector().empty();
         level = dynamic_cast<ParcelableArray*>(level->getParcelableVector()[0].get()))
        ++depth;
    EXPECT_EQ(depth, kMaxParcelableDepth - 1);
}

TEST(ParcelableTest, HostileBytesNeverCrash)
{
    // Valid messages, truncated at every length and flipped at random, then pure noise.
    auto bundle = Bundle::obtain();
    bundle->putString("title", "x");
    bundle->putByteArray("raw", "\x01\x02\x03", 3);
    bundle->putDouble("d", 1.5);
    auto inner = ParcelableArray::obtain();
    inner->addParcelable(Bundle::obtain().get());
    bundle->putParcelable("arr", inner.get());
    auto message = RemoteMessage::obtain();
    message->code = 1;
    message->object = bundle.get();
    auto written = message->writeToParcel();
    std::vector<unsigned char> valid(written->data(), written->data() + written->dataSize());

    std::mt19937 random(1234);
    int rebuilt = 0;
    auto attempt = [&rebuilt](const std::vector<unsigned char>& bytes)
    {
        auto p = Parcel::obtain();
        p->fillData(bytes.data(), (int)bytes.size());
        while (auto object = createFromParcel(p.get()))
        {
            ++rebuilt;
            if (auto* b = dynamic_cast<Bundle*>(object.get()))
                b->getBundle("arr"); // lookups on damaged objects are safe too
            if (p->dataAvail() <= 0)
                break;
        }
    };

    for (size_t length = 0; length <= valid.size(); ++length)
        attempt(std::vector<unsigned char>(valid.begin(), valid.begin() + (long)length));
    for (int round = 0; round < 3000; ++round)
    {
        auto bytes = valid;
        for (int flips = 1 + (int)(random() % 4); flips > 0; --flips)
            bytes[random() % bytes.size()] = (unsigned char)random();
        attempt(bytes);
    }
    for (int round = 0; round < 2000; ++round)
    {
        std::vector<unsigned char> noise(random() % 200);
        for (auto& byte : noise)
            byte = (unsigned char)random();
        // Give noise a known magic often enough to reach the readers.
        if (noise.size() >= 4 && round % 2 == 0)
        {
            const int magics[] = {ParcelableMagic::kBundle, ParcelableMagic::kParcelableArray,
                                  ParcelableMagic::kRemoteMessage};
            const int magic = magics[round % 3];
            std::memcpy(noise.data(), &magic, 4);
        }
        attempt(noise);
    }
    EXPECT_GT(rebuilt, 3000); // the readers were really exercised
}
