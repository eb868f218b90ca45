// ApiMessageHelper: attached objects by class, byte arrays and int arrays by their real length.
#include "support/ApiHarness.h"

using namespace LmComTesting;

namespace
{
AppMessage::Ptr carrying(juce::ReferenceCountedObject* object)
{
    return AppMessage::Ptr(new AppMessage(1, 0, 0, object));
}
} // namespace

TEST(ApiMessageHelperTest, ObjectsAreReadOnlyAsTheirOwnClassAndLength)
{
    auto bundle = dataBundle({1, 2});
    EXPECT_EQ(ApiMessageHelper::bundleOf(carrying(bundle.get())), bundle);
    EXPECT_EQ(ApiMessageHelper::bundleOf(nullptr), nullptr);
    for (auto& other : {juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>(),
                        juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>(ParcelableArray::obtain().get()),
                        juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>(new juce::DynamicObject())})
    {
        EXPECT_EQ(ApiMessageHelper::bundleOf(carrying(other.get())), nullptr);
        EXPECT_EQ(ApiMessageHelper::byteArrayOf(carrying(other.get()), "data"), nullptr);
        EXPECT_EQ(ApiMessageHelper::formatOf(carrying(other.get())), 0);
    }
    ASSERT_NE(ApiMessageHelper::byteArrayOf(carrying(bundle.get()), "data"), nullptr);
    EXPECT_EQ(ApiMessageHelper::byteArrayOf(carrying(bundle.get()), "data")->getSize(), 2u);
    bundle->putInt("number", 3);
    EXPECT_EQ(ApiMessageHelper::byteArrayOf(carrying(bundle.get()), "number"), nullptr);

    // Int arrays: only as many integers as the bytes hold; the output is left alone otherwise.
    const int values[] = {-2, 65536, 7};
    auto three = RemoteObjFormat::formatIntArray(values, 3);
    int out[4] = {9, 9, 9, 9};
    EXPECT_TRUE(ApiMessageHelper::intsOf(carrying(three.get()), out, 3));
    EXPECT_EQ(std::vector<int>(out, out + 4), (std::vector<int>{-2, 65536, 7, 9}));
    EXPECT_FALSE(ApiMessageHelper::intsOf(carrying(three.get()), out, 4));
    EXPECT_FALSE(ApiMessageHelper::intsOf(carrying(three.get()), out, -1));
    EXPECT_TRUE(ApiMessageHelper::intsOf(carrying(three.get()), out, 0));
    three->putByteArray("int[]", "\x01\x00\x00\x00\x02\x00\x00\x00\x03\x00\x00", 11);
    int untouched[3] = {5, 5, 5};
    EXPECT_FALSE(ApiMessageHelper::intsOf(carrying(three.get()), untouched, 3));
    EXPECT_TRUE(ApiMessageHelper::intsOf(carrying(three.get()), untouched, 2));
    EXPECT_EQ(std::vector<int>(untouched, untouched + 3), (std::vector<int>{1, 2, 5}));
    EXPECT_EQ(ApiMessageHelper::formatOf(carrying(three.get())), RemoteObjFormat::kIntArray);
    const unsigned char bytes[12] = {};
    EXPECT_FALSE(ApiMessageHelper::intsOf(carrying(RemoteObjFormat::formatByteArray(bytes, 12).get()), out, 3));
}
