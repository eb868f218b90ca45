#include "support/TestSupport.h"

#include <LmCom.h>

#include <cfloat>
#include <climits>
#include <cmath>

using LmComTesting::hex;

namespace
{
class BundleTest : public LmComTesting::LmComTest
{
};

Parcel::Ptr reread(const Parcel::Ptr& written)
{
    auto copy = Parcel::obtain();
    copy->fillData(written->data(), written->dataSize());
    return copy;
}
} // namespace

TEST_F(BundleTest, WireLayoutIsExact)
{
    auto empty = Bundle::obtain();
    auto p = empty->writeToParcel();
    EXPECT_EQ(hex(p->data(), p->dataSize()), "42 4E 44 4C 00 00 00 00 00 00 00 00");

    auto b = Bundle::obtain();
    b->putInt("a", 1);
    auto nested = Bundle::obtain();
    b->putBundle("n", nested);
    auto q = b->writeToParcel();
    EXPECT_EQ(hex(q->data(), q->dataSize()),
              "42 4E 44 4C "                                           // BNDL
              "01 00 00 00 02 00 00 00 61 00 01 00 00 00 01 00 00 00 " // values: a = int 1
              "01 00 00 00 02 00 00 00 6E 00 "                         // one object under "n"
              "42 4E 44 4C 00 00 00 00 00 00 00 00");                  // the nested empty Bundle
}

TEST_F(BundleTest, PutsAndConversions)
{
    auto b = Bundle::obtain();
    b->putInt("", 5);
    b->putString("", "x");
    b->putBundle("", Bundle::obtain());
    EXPECT_TRUE(b->isEmpty());

    b->putInt("a", 1);
    EXPECT_EQ(b->getString("a", "default"), "1");
    EXPECT_EQ(b->getInt("missing", 7), 7);
    b->putString("n", "12");
    EXPECT_EQ(b->getInt("n", 0), 12);
    b->putInt("n", 3); // replaces the String
    EXPECT_EQ(b->getString("n", {}), "3");
    b->putDouble("d", 2.75);
    EXPECT_EQ(b->getInt("d", 0), 2);
    b->putBool("t", true);
    EXPECT_TRUE(b->getBool("t", false));
    // Values from another process convert without ever overflowing.
    b->putString("big", " 99999999999999999999");
    b->putString("low", "-2147483648");
    b->putString("yes", " yes ");
    b->putDouble("huge", 1e300);
    b->putDouble("nan", std::nan(""));
    EXPECT_EQ(b->getInt("big", 0), INT_MAX);
    EXPECT_EQ(b->getInt("low", 0), INT_MIN);
    EXPECT_TRUE(b->getBool("big", false));
    EXPECT_TRUE(b->getBool("yes", false));
    EXPECT_EQ(b->getInt("huge", 0), INT_MAX);
    EXPECT_EQ(b->getInt("nan", 7), 0);
    b->putDouble("inf", -INFINITY);
    EXPECT_EQ(b->getString("nan", {}), "nan");
    EXPECT_EQ(b->getString("inf", {}), "-inf");
    EXPECT_EQ(b->getString("huge", {}), juce::var(1e300).toString());
    b->putString("e", "1E9999999999");
    b->putString("-e", "-1e99999");
    b->putString("tiny", "1e-99999");
    b->putString("text", " 2.5x");
    EXPECT_EQ(b->getDouble("e", 0), DBL_MAX);
    EXPECT_EQ(b->getDouble("-e", 0), -DBL_MAX);
    EXPECT_EQ(b->getDouble("tiny", 1), 0.0);
    EXPECT_EQ(b->getDouble("text", 0), 2.5);
    EXPECT_EQ(b->getDouble("yes", 1), 0.0);
    EXPECT_EQ(b->getByteArray("t"), nullptr);
    b->putByteArray("x", "\x01\x02\x03", 3);
    ASSERT_NE(b->getByteArray("x"), nullptr);
    EXPECT_EQ(b->getByteArray("x")->getSize(), 3u);

    // Keys are exact: the value map and the object map are independent.
    auto inner = Bundle::obtain();
    b->putBundle("a", inner);
    EXPECT_EQ(b->getBundle("a"), inner);
    EXPECT_EQ(b->getInt("a", 0), 1);
    EXPECT_EQ(b->getBundle("A"), nullptr);

    // getBundle on an object of another class is absent, not reinterpreted.
    b->putParcelable("m", Parcelable::Ptr(RemoteMessage::obtain().get()));
    EXPECT_EQ(b->getBundle("m"), nullptr);
    EXPECT_NE(b->getParcelable("m"), nullptr);
}

TEST_F(BundleTest, CloneCopiesValuesButSharesNestedObjects)
{
    auto source = Bundle::obtain();
    source->putInt("v", 1);
    auto nested = Bundle::obtain();
    nested->putInt("inner", 1);
    source->putBundle("n", nested);

    auto copy = Bundle::Ptr(dynamic_cast<Bundle*>(source->clone().get()));
    ASSERT_NE(copy, nullptr);
    copy->putInt("v", 2);
    EXPECT_EQ(source->getInt("v", 0), 1);
    copy->getBundle("n")->putInt("inner", 2);
    EXPECT_EQ(source->getBundle("n")->getInt("inner", 0), 2);
}

TEST_F(BundleTest, RecycleEmptiesForEveryHolder)
{
    auto b = Bundle::obtain();
    auto other = b;
    b->putInt("a", 1);
    b->putBundle("n", Bundle::obtain());
    b->recycle();
    EXPECT_TRUE(other->isEmpty());
    other->putInt("a", 2); // still usable
    EXPECT_EQ(b->getInt("a", 0), 2);
}

TEST_F(BundleTest, EveryValueKindRoundTrips)
{
    auto b = Bundle::obtain();
    b->putInt("int", -123456);
    b->putBool("bool", true);
    b->putDouble("double", -0.1);
    b->putString("string", juce::String::fromUTF8("caf\xC3\xA9 \xE4\xB8\xAD 100%"));
    b->putByteArray("bytes", "\x00\xFF\x10", 3);
    b->putByteArray("empty", nullptr, 0);
    auto back = Bundle::obtain();
    back->createFromParcel(reread(b->writeToParcel()).get());
    EXPECT_EQ(back->getInt("int", 0), -123456);
    EXPECT_TRUE(back->getBool("bool", false));
    EXPECT_EQ(back->getDouble("double", 0), -0.1);
    EXPECT_EQ(back->getString("string", {}), b->getString("string", {}));
    ASSERT_NE(back->getByteArray("bytes"), nullptr);
    EXPECT_EQ(*back->getByteArray("bytes"), juce::MemoryBlock("\x00\xFF\x10", 3));
    // An empty byte array does not survive the trip (established format).
    EXPECT_EQ(back->getByteArray("empty"), nullptr);
    EXPECT_EQ(back->getValueMap().size(), 5);
}

TEST_F(BundleTest, ReadingAddsToWhatIsHeldAndStopsAtAnUnknownNestedMagic)
{
    auto b = Bundle::obtain();
    b->putInt("keep", 1);
    auto wrongMagic = Parcel::obtain();
    wrongMagic->writeInt(0x12345678);
    b->createFromParcel(wrongMagic.get());
    EXPECT_EQ(b->getValueMap().size(), 1);

    // Objects section: "a" = Bundle, then "b" with an unknown magic, then "c" = Bundle.
    auto p = Parcel::obtain();
    p->writeInt(ParcelableMagic::kBundle);
    p->writeInt(0);
    p->writeInt(3);
    p->writeString("a");
    Bundle::obtain()->writeToParcel(p.get());
    p->writeString("b");
    p->writeInt(0x0BADF00D);
    p->writeString("c");
    Bundle::obtain()->writeToParcel(p.get());

    LmComTesting::LogLines::clear();
    b->createFromParcel(reread(p).get());
    EXPECT_NE(b->getBundle("a"), nullptr);
    EXPECT_EQ(b->getParcelable("b"), nullptr);
    EXPECT_EQ(b->getParcelable("c"), nullptr);
    EXPECT_EQ(b->getInt("keep", 0), 1);
    EXPECT_EQ(LmComTesting::LogLines::count("E|Message/Bundle|215|Bundle|readParcelable error with unknown flag"), 1);
}
