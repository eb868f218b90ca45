#include "support/TestSupport.h"

#include <LmCom.h>

using LmComTesting::hex;

namespace
{
class ParcelableArrayTest : public LmComTesting::LmComTest
{
};
} // namespace

TEST_F(ParcelableArrayTest, WireLayoutAndOrder)
{
    auto empty = ParcelableArray::obtain();
    auto p = empty->writeToParcel();
    EXPECT_EQ(hex(p->data(), p->dataSize()), "50 41 41 59 00 00 00 00");

    auto array = ParcelableArray::obtain();
    for (int i = 0; i < 2; ++i)
    {
        auto b = Bundle::obtain();
        b->putInt("i", i);
        array->addParcelable(b.get());
    }
    auto written = array->writeToParcel();
    auto copy = Parcel::obtain();
    copy->fillData(written->data(), written->dataSize());

    // Reading into an array that already holds one element appends after it.
    auto target = ParcelableArray::obtain();
    target->addParcelable(RemoteMessage::obtain().get());
    target->createFromParcel(copy.get());
    auto& elements = target->getParcelableVector();
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_EQ(elements[0]->getFlags(), ParcelableMagic::kRemoteMessage);
    EXPECT_EQ(dynamic_cast<Bundle*>(elements[1].get())->getInt("i", -1), 0);
    EXPECT_EQ(dynamic_cast<Bundle*>(elements[2].get())->getInt("i", -1), 1);
}

TEST_F(ParcelableArrayTest, CloneIsDeep)
{
    auto array = ParcelableArray::obtain();
    auto b = Bundle::obtain();
    b->putString("s", "x");
    array->addParcelable(b.get());

    auto copy = ParcelableArray::Ptr(dynamic_cast<ParcelableArray*>(array->clone().get()));
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->getParcelableVector().size(), 1u);
    auto* copied = dynamic_cast<Bundle*>(copy->getParcelableVector()[0].get());
    ASSERT_NE(copied, nullptr);
    EXPECT_NE(copied, b.get());
    EXPECT_EQ(copied->getString("s", {}), "x");

    array->recycle();
    EXPECT_TRUE(array->getParcelableVector().empty());
    EXPECT_EQ(b->getString("s", {}), "x"); // elements are released, not recycled
}

TEST_F(ParcelableArrayTest, UnknownElementStopsWithTheSharedLogLine)
{
    auto p = Parcel::obtain();
    p->writeInt(ParcelableMagic::kParcelableArray);
    p->writeInt(3);
    Bundle::obtain()->writeToParcel(p.get());
    p->writeInt(0x0BADF00D);
    auto copy = Parcel::obtain();
    copy->fillData(p->data(), p->dataSize());

    LmComTesting::LogLines::clear();
    auto array = ParcelableArray::obtain();
    array->createFromParcel(copy.get());
    EXPECT_EQ(array->getParcelableVector().size(), 1u);
    EXPECT_EQ(
        LmComTesting::LogLines::count("E|Message/ParcelableArray|45|Bundle|readParcelable error with unknown flag"), 1);
}
