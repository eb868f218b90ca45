#include "support/TestSupport.h"

#include <LmCom.h>

#include <thread>

using LmComTesting::hex;

namespace
{
Parcel::Ptr copyOf(const Parcel::Ptr& written)
{
    auto copy = Parcel::obtain();
    copy->fillData(written->data(), written->dataSize());
    return copy;
}

RemoteMessage::Ptr asMessage(const Parcelable::Ptr& object)
{
    return RemoteMessage::Ptr(dynamic_cast<RemoteMessage*>(object.get()));
}
} // namespace

TEST(RemoteMessageTest, WireLayoutIsExact)
{
    RemoteMessage::purgeAll();
    auto m = RemoteMessage::obtain();
    auto p = m->writeToParcel();
    EXPECT_EQ(hex(p->data(), p->dataSize()), "52 4D 53 47 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF FF");

    m->code = 1745;
    m->param1 = 5;
    m->param2 = -1;
    m->sender = 5;
    auto q = m->writeToParcel();
    EXPECT_EQ(hex(q->data(), q->dataSize()), "52 4D 53 47 D1 06 00 00 05 00 00 00 FF FF FF FF 05 00 00 00");
}

TEST(RemoteMessageTest, NestedObjectsOfEveryKindRoundTrip)
{
    auto array = ParcelableArray::obtain();
    for (int i = 0; i < 3; ++i)
    {
        auto b = Bundle::obtain();
        b->putInt("int", i);
        b->putBool("bool", i % 2 == 1);
        b->putDouble("double", i * 1.5);
        b->putString("string", "item " + juce::String(i));
        b->putByteArray("bytes", "\x01\x02\x03\x04", i + 1);
        auto inner = Bundle::obtain();
        inner->putString("deep", "yes");
        b->putBundle("inner", inner);
        array->addParcelable(b.get());
    }
    auto m = RemoteMessage::obtain();
    m->code = 2248;
    m->param1 = 7;
    m->param2 = 8;
    m->sender = 13;
    m->object = array.get();

    auto rebuilt = asMessage(createFromParcel(copyOf(m->writeToParcel()).get()));
    ASSERT_NE(rebuilt, nullptr);
    EXPECT_EQ(rebuilt->code, 2248);
    EXPECT_EQ(rebuilt->param1, 7);
    EXPECT_EQ(rebuilt->param2, 8);
    EXPECT_EQ(rebuilt->sender, 13);
    auto* back = dynamic_cast<ParcelableArray*>(rebuilt->object.get());
    ASSERT_NE(back, nullptr);
    ASSERT_EQ(back->getParcelableVector().size(), 3u);
    for (int i = 0; i < 3; ++i)
    {
        auto* b = dynamic_cast<Bundle*>(back->getParcelableVector()[(size_t)i].get());
        ASSERT_NE(b, nullptr);
        EXPECT_EQ(b->getInt("int", -1), i);
        EXPECT_EQ(b->getBool("bool", false), i % 2 == 1);
        EXPECT_EQ(b->getDouble("double", -1), i * 1.5);
        EXPECT_EQ(b->getString("string", {}), "item " + juce::String(i));
        ASSERT_NE(b->getByteArray("bytes"), nullptr);
        EXPECT_EQ((int)b->getByteArray("bytes")->getSize(), i + 1);
        ASSERT_NE(b->getBundle("inner"), nullptr);
        EXPECT_EQ(b->getBundle("inner")->getString("deep", {}), "yes");
    }
}

TEST(RemoteMessageTest, ObjectIsWhateverFollows)
{
    auto p = Parcel::obtain();
    RemoteMessage::obtain()->writeToParcel(p.get());
    auto b = Bundle::obtain();
    b->putInt("x", 1);
    b->writeToParcel(p.get());
    auto m = asMessage(createFromParcel(copyOf(p).get()));
    ASSERT_NE(m, nullptr);
    ASSERT_NE(m->object, nullptr);
    EXPECT_EQ(m->object->getFlags(), ParcelableMagic::kBundle);

    // A Parcel with a Bundle then a message yields them one after the other.
    auto q = Parcel::obtain();
    b->writeToParcel(q.get());
    RemoteMessage::obtain()->writeToParcel(q.get());
    auto r = copyOf(q);
    EXPECT_EQ(createFromParcel(r.get())->getFlags(), ParcelableMagic::kBundle);
    auto second = asMessage(createFromParcel(r.get()));
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->object, nullptr);
    EXPECT_EQ(createFromParcel(r.get()), nullptr);

    // Reading into a message that already holds an object replaces it, also by null.
    auto holder = RemoteMessage::obtain();
    holder->object = b.get();
    auto bare = RemoteMessage::obtain()->writeToParcel();
    holder->createFromParcel(copyOf(bare).get());
    EXPECT_EQ(holder->object, nullptr);

    // Truncated: missing fields read as -1.
    auto t = Parcel::obtain();
    t->writeInt(ParcelableMagic::kRemoteMessage);
    t->writeInt(1745);
    auto truncated = asMessage(createFromParcel(copyOf(t).get()));
    ASSERT_NE(truncated, nullptr);
    EXPECT_EQ(truncated->code, 1745);
    EXPECT_EQ(truncated->param1, -1);
    EXPECT_EQ(truncated->sender, -1);
}

TEST(RemoteMessageTest, CloneIsDeepAndUnstamped)
{
    auto m = RemoteMessage::obtain();
    m->code = 1;
    m->param1 = 2;
    m->param2 = 3;
    m->sender = 9;
    auto b = Bundle::obtain();
    b->putInt("a", 1);
    m->object = b.get();
    auto copy = asMessage(m->clone());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->code, 1);
    EXPECT_EQ(copy->param2, 3);
    EXPECT_EQ(copy->sender, -1);
    ASSERT_NE(copy->object, nullptr);
    EXPECT_NE(copy->object.get(), b.get());
}

TEST(RemoteMessageTest, PoolRules)
{
    RemoteMessage::purgeAll();

    // Two holders: recycle does nothing at all, not even to the attached object.
    auto held = RemoteMessage::obtain();
    auto second = held;
    auto b = Bundle::obtain();
    b->putInt("a", 1);
    held->object = b.get();
    held->recycle();
    EXPECT_EQ(RemoteMessage::pooledCount(), 0);
    EXPECT_EQ(b->getInt("a", 0), 1);
    second = nullptr;

    // Sole holder: the attached object is recycled and the message is pooled, reset.
    held->code = 5;
    held->sender = 3;
    held->recycle();
    EXPECT_EQ(RemoteMessage::pooledCount(), 1);
    EXPECT_TRUE(b->isEmpty());
    auto* raw = held.get();
    held = nullptr;
    auto again = RemoteMessage::obtain();
    EXPECT_EQ(again.get(), raw);
    EXPECT_EQ(again->code, 0);
    EXPECT_EQ(again->sender, -1);
    EXPECT_EQ(again->object, nullptr);
    again = nullptr;
    RemoteMessage::purgeAll();

    // The 21st is not pooled, but its object is still recycled into its own pool.
    std::vector<RemoteMessage::Ptr> many;
    for (int i = 0; i < 21; ++i)
        many.push_back(RemoteMessage::obtain());
    auto last = Bundle::obtain();
    last->putInt("x", 1);
    many.back()->object = last.get();
    for (auto& m : many)
    {
        m->recycle();
        m = nullptr;
    }
    EXPECT_EQ(RemoteMessage::pooledCount(), RemoteMessage::kPoolSize);
    EXPECT_TRUE(last->isEmpty());
    RemoteMessage::purgeAll();
    EXPECT_EQ(RemoteMessage::pooledCount(), 0);
}

TEST(RemoteMessageTest, PoolsAreSafeFromManyThreads)
{
    // Message pool and Parcel pool together, in the lock order the library uses.
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int t = 0; t < 6; ++t)
    {
        threads.emplace_back(
            [t, &wrong]
            {
                for (int i = 0; i < 2000; ++i)
                {
                    auto m = RemoteMessage::obtain();
                    if (m->code != 0 || m->object != nullptr)
                        ++wrong;
                    m->code = t;
                    m->object = Bundle::obtain().get();
                    auto p = m->writeToParcel();
                    auto copy = Parcel::obtain();
                    copy->fillData(p->data(), p->dataSize());
                    auto back = asMessage(createFromParcel(copy.get()));
                    if (back == nullptr || back->code != t)
                        ++wrong;
                    p->recycle();
                    copy->recycle();
                    if (back != nullptr)
                        back->recycle();
                    m->recycle();
                }
            });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_LE(RemoteMessage::pooledCount(), RemoteMessage::kPoolSize);
}
