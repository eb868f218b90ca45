#include "support/TestSupport.h"

#include <LmCom.h>

namespace
{
// What a peer sees: the Bundle after a trip through a Parcel.
Bundle::Ptr overTheWire(const Bundle::Ptr& bundle)
{
    auto written = bundle->writeToParcel();
    auto copy = Parcel::obtain();
    copy->fillData(written->data(), written->dataSize());
    auto back = Bundle::obtain();
    back->createFromParcel(copy.get());
    return back;
}
} // namespace

TEST(RemoteObjFormatTest, ValuesUnwrapOnlyByTheirOwnFormat)
{
    auto i = overTheWire(RemoteObjFormat::formatInt(42));
    EXPECT_EQ(i->getInt("Format", 0), 5);
    EXPECT_EQ(RemoteObjFormat::getInt(i), 42);
    EXPECT_EQ(RemoteObjFormat::getString(i), "");

    auto s = overTheWire(RemoteObjFormat::formatString("hello"));
    EXPECT_EQ(RemoteObjFormat::getString(s), "hello");
    EXPECT_EQ(RemoteObjFormat::getInt(s), 0);
    EXPECT_EQ(RemoteObjFormat::getByteArray(s), nullptr);

    const unsigned char raw[] = {9, 8, 7};
    auto b = overTheWire(RemoteObjFormat::formatByteArray(raw, 3));
    ASSERT_NE(RemoteObjFormat::getByteArray(b), nullptr);
    EXPECT_EQ(*RemoteObjFormat::getByteArray(b), juce::MemoryBlock(raw, 3));
    EXPECT_EQ(RemoteObjFormat::getIntArray(b), nullptr);

    const int ints[] = {1, -2, 0x01020304};
    auto a = overTheWire(RemoteObjFormat::formatIntArray(ints, 3));
    auto* block = RemoteObjFormat::getIntArray(a);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(LmComTesting::hex(block->getData(), (int)block->getSize()), "01 00 00 00 FE FF FF FF 04 03 02 01");

    EXPECT_EQ(RemoteObjFormat::getInt(nullptr), 0);
    EXPECT_EQ(RemoteObjFormat::getInt(Bundle::obtain()), 0);
}

TEST(RemoteObjFormatTest, CommandLinesAndTheirPredicates)
{
    EXPECT_EQ(RemoteObjFormat::formatCommandLine(nullptr), nullptr);
    EXPECT_EQ(RemoteObjFormat::generateCommandLine(nullptr), nullptr);
    EXPECT_EQ(RemoteObjFormat::generateCommandLine(RemoteObjFormat::formatInt(1)), nullptr);

    using S = Pubhead::eAppServiceType;
    auto enter = AppCommandLine::genCmdSourceEnter(S::SrvUSB, false, true);
    EXPECT_TRUE(enter->isSourceEnter());
    EXPECT_FALSE(enter->isParking());
    EXPECT_TRUE(enter->isFrontShow());
    EXPECT_EQ(enter->getDetail(), 2);

    auto show = AppCommandLine::genCmdPageShow(S::SrvSetup, true);
    EXPECT_TRUE(show->isPageShow());
    EXPECT_TRUE(show->isParking());
    EXPECT_TRUE(show->isFrontShow()); // always, although the factory takes no such flag

    // Exit and hide keep the next service in detail: bit 0 of its number reads as parking.
    auto exit = AppCommandLine::genCmdSourceExit(S::SrvRadio, S::SrvHDRadio);
    EXPECT_TRUE(exit->isSourceExit());
    EXPECT_TRUE(exit->isParking());
    EXPECT_FALSE(exit->isFrontShow());
    EXPECT_EQ(exit->getNextService(), S::SrvHDRadio);

    auto hide = AppCommandLine::genCmdPageHide(S::SrvMainMenu, S::SrvSetup);
    auto extra = Bundle::obtain();
    extra->putString("why", "call");
    hide->putExtraData(extra);
    auto wrapped = RemoteObjFormat::formatCommandLine(hide);
    EXPECT_EQ(wrapped->getBundle("bundle"), extra); // shared, not copied
    auto back = RemoteObjFormat::generateCommandLine(overTheWire(wrapped));
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->isPageHide());
    EXPECT_EQ(back->getService(), S::SrvMainMenu);
    EXPECT_EQ(back->getNextService(), S::SrvSetup);
    ASSERT_NE(back->getExtraData(), nullptr);
    EXPECT_EQ(back->getExtraData()->getString("why", {}), "call");

    auto plain = RemoteObjFormat::generateCommandLine(RemoteObjFormat::formatCommandLine(show));
    EXPECT_EQ(plain->getExtraData(), nullptr);
}

TEST(RemoteObjFormatTest, MessageBodyLists)
{
    auto empty = RemoteObjFormat::formatMessageBodyList({});
    EXPECT_EQ(empty->getInt("Format", 0), 8);
    EXPECT_EQ(empty->getInt("CombOBJ[]", -1), 0);
    EXPECT_TRUE(RemoteObjFormat::getMessageBodyList(empty).empty());

    unsigned char data[] = {1, 2, 3};
    std::vector<_MessageBody> bodies(13);
    std::vector<_MessageBody*> list;
    for (int i = 0; i < 13; ++i)
    {
        bodies[(size_t)i] = {i, i * 10, i == 12 ? 3 : 5, i == 12 ? data : nullptr};
        list.push_back(&bodies[(size_t)i]);
    }
    auto wrapped = RemoteObjFormat::formatMessageBodyList(list);
    EXPECT_EQ(wrapped->getInt("int112", -1), 12); // record 12's first value
    EXPECT_EQ(wrapped->getByteArray("byte[]0"), nullptr);

    auto back = RemoteObjFormat::getMessageBodyList(overTheWire(wrapped));
    ASSERT_EQ(back.size(), 13u);
    EXPECT_EQ(back[3]->nValue2, 30);
    EXPECT_EQ(back[3]->nLength, 5); // null data: the length is kept
    EXPECT_EQ(back[3]->pData, nullptr);
    ASSERT_NE(back[12]->pData, nullptr);
    EXPECT_EQ(back[12]->pData[2], 3);
    RemoteObjFormat::freeMessageBodyList(back);

    // A hostile count cannot make the reader allocate beyond what the Bundle holds, and a
    // length larger than the data is cut to the data.
    auto hostile = Bundle::obtain();
    hostile->putInt("Format", 8);
    hostile->putInt("CombOBJ[]", 0x7FFFFFFF);
    hostile->putInt("int30", 1000);
    hostile->putByteArray("byte[]0", data, 3);
    auto bounded = RemoteObjFormat::getMessageBodyList(hostile);
    EXPECT_LE(bounded.size(), 4u);
    ASSERT_FALSE(bounded.empty());
    EXPECT_EQ(bounded[0]->nLength, 3);
    RemoteObjFormat::freeMessageBodyList(bounded);
}
