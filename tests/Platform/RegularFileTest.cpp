// Files named from outside: a FIFO or a device never blocks or floods the reader.
#include "support/TestSupport.h"

#include "Platform/IniFile.h"
#include "Platform/RegularFile.h"

#include <LmCom.h>

#include <sys/stat.h>

using namespace LmComTesting;

namespace
{
using RegularFileTest = LmComTest;
using Status = Platform::RegularFile::Status;

juce::String makeFifo(const juce::File& root)
{
    const auto path = root.getChildFile("fifo").getFullPathName();
    EXPECT_EQ(mkfifo(path.toRawUTF8(), 0600), 0);
    return path;
}
} // namespace

TEST_F(RegularFileTest, OnlyRegularFilesUpToTheCapAreRead)
{
    const auto fifo = makeFifo(m_root);
    juce::MemoryBlock out("kept", 4);
    const auto read = [&](const juce::String& path, juce::int64 cap)
    {
        Status status = Status::failed;
        EXPECT_TRUE(finishesWithin(5000, [&] { status = Platform::RegularFile::read(path.toRawUTF8(), cap, out); }))
            << path;
        return status;
    };
    EXPECT_EQ(read(fifo, 100), Status::notRegular);
    EXPECT_EQ(read("/dev/zero", 100), Status::notRegular);
    EXPECT_EQ(read(m_root.getFullPathName(), 100), Status::notRegular);
    EXPECT_EQ(read(m_root.getChildFile("none").getFullPathName(), 100), Status::missing);
    EXPECT_EQ(out, juce::MemoryBlock("kept", 4));

    const auto file = m_root.getChildFile("data");
    ASSERT_TRUE(file.replaceWithData("0123456789", 10));
    EXPECT_EQ(read(file.getFullPathName(), 9), Status::tooLarge);
    EXPECT_EQ(read(file.getFullPathName(), 10), Status::read);
    EXPECT_EQ(out, juce::MemoryBlock("0123456789", 10));
    EXPECT_FALSE(Platform::RegularFile::isRegular(fifo.toRawUTF8()));
    EXPECT_TRUE(Platform::RegularFile::isRegular(file.getFullPathName().toRawUTF8()));
}

TEST_F(RegularFileTest, ParcelsIniFilesAndFontListsRefuseSpecialFiles)
{
    const auto fifo = makeFifo(m_root);
    auto parcel = parcelOf("01 02");
    for (const auto& path : {fifo, juce::String("/dev/zero")})
    {
        bool loaded = true, iniLoaded = true;
        EXPECT_TRUE(finishesWithin(5000,
                                   [&]
                                   {
                                       loaded = parcel->loadDataFromFile(path);
                                       iniLoaded = Platform::IniFile(path).isLoaded();
                                   }))
            << path;
        EXPECT_FALSE(loaded) << path;
        EXPECT_FALSE(iniLoaded) << path;
    }
    EXPECT_EQ(bytesOf(parcel), "01 02");
}

TEST_F(RegularFileTest, AppConfigLoadsAFontListNamingAFifoAndNamesThatAreNotUtf8)
{
    const std::string list = "[Fonts]\nFont1=fifo\nFont2=\xC0\x80\xFF\xFE.ttf\nFont3=\\\xA0\\x.ttf\n";
    const auto listFile = systemFile("/NandFlash/Application//Resource/Fonts/font.ini");
    writeSystemFile("/NandFlash/Application//Resource/Fonts/font.ini", {});
    ASSERT_TRUE(listFile.replaceWithData(list.data(), list.size()));
    makeFifo(listFile.getParentDirectory());
    EXPECT_TRUE(finishesWithin(5000, [] { AppConfig::loadFont(); }));
}
