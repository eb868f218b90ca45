// The setup file's text: what a reader takes from it, hostile files, and writing back.
#include "support/TestSupport.h"

#include "Platform/SetupFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <random>

using namespace LmComTesting;
using Platform::SetupFile;

namespace
{
class SetupFileTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        store = std::make_unique<SetupFile>(path(), [this](const juce::String& problem)
                                            { problems.push_back(problem.toStdString()); });
    }

    juce::String path() const { return m_root.getChildFile("setup.txt").getFullPathName(); }
    std::unique_ptr<SetupFile> store;
    SetupFile& file() { return *store; }
    std::vector<std::string> problems;
};

std::string describe(const SetupFile::Values& values)
{
    std::string text;
    for (auto& [index, value] : values)
        text += std::to_string(index)
                + (value.isString ? "=\"" + value.text + "\" " : "=" + std::to_string(value.number) + " ");
    return text;
}
} // namespace

TEST_F(SetupFileTest, ReadsGoodLinesAndSkipsEveryOtherOne)
{
    const std::string longest(SetupFile::kMaxTextBytes, 'z');
    const struct
    {
        std::string text;
        std::string values; // what is read
        int badLines;
    } cases[] = {
        {"", "", 0},
        {"# only a comment\n\n", "", 0},
        {"lmcom-setup 1\n0 int 5\n511 string \"a b\"\r\n", "0=5 511=\"a b\" ", 0},
        {"  lmcom-setup   1  \n  7\tint\t-2147483648  \n7 int 3\n", "7=3 ", 0},
        {"lmcom-setup 1\n3 string \"\\\"\\\\\\n\\r\\t\\x7F\\xc3\\xA9\"\n", "3=\"\"\\\n\r\t\x7F\xC3\xA9\" ", 0},
        {"lmcom-setup 1\n"
         "512 int 1\n-1 int 1\n-0 int 1\n1 int 2147483648\n1 int -2147483649\n1 int 12x\n1 int\n1 int 1 2\n"
         "1 float 1\n1 string abc\n1 string \"abc\n1 string \"a\" b\n1 string \"\\x00\"\n1 string \"\\q\"\n"
         "1 string \"\\x4\"\n1 string \"tab\there\"\n1\nx int 1\n2 int 2\n",
         "2=2 ", 18},
        {"lmcom-setup 1\n1 string \"" + longest + "\"\n2 string \"" + longest + "z\"\n", "1=\"" + longest + "\" ", 1},
    };
    for (auto& c : cases)
    {
        SetupFile::Values values;
        int bad = 0, first = 0;
        juce::String error;
        ASSERT_TRUE(SetupFile::parse(c.text, values, bad, first, error)) << c.text << error;
        EXPECT_EQ(describe(values), c.values) << c.text;
        EXPECT_EQ(bad, c.badLines) << c.text;
    }

    // Not a setup file, or one of another version: refused as a whole.
    for (const char* text :
         {"lmcom-setup 2\n0 int 1\n", "0 int 1\n", "lmcom-setup\n", "lmcom-setup 1 x\n", "\xFF\xFE lmcom"})
    {
        SetupFile::Values values;
        int bad = 0, first = 0;
        juce::String error;
        EXPECT_FALSE(SetupFile::parse(text, values, bad, first, error)) << text;
        EXPECT_TRUE(values.empty());
    }
}

TEST_F(SetupFileTest, WhatIsWrittenReadsBackTheSame)
{
    std::mt19937 random(11);
    SetupFile::Values values;
    for (int round = 0; round < 200; ++round)
    {
        const int index = (int)(random() % SetupFile::kCount);
        SetupFile::Value value;
        value.isString = random() % 2 == 0;
        if (value.isString)
            for (int n = (int)(random() % 40); n > 0; --n)
                value.text += (char)(1 + random() % 255); // any byte but zero
        else
            value.number = (std::int32_t)random();
        values[index] = value;
        ASSERT_TRUE(file().set(index, value));
    }
    const auto back = file().getAll(0);
    EXPECT_EQ(describe(back), describe(values));
    EXPECT_TRUE(problems.empty());

    // What is written is what format makes, and a person can read it.
    juce::MemoryBlock written;
    ASSERT_TRUE(juce::File(path()).loadFileAsData(written));
    const std::string text(static_cast<const char*>(written.getData()), written.getSize());
    EXPECT_EQ(text, SetupFile::format(values));
    EXPECT_NE(text.find("\nlmcom-setup 1\n"), std::string::npos);
    struct stat info = {};
    ASSERT_EQ(stat(path().toRawUTF8(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    // Out of bounds: refused, reported, file unchanged.
    SetupFile::Value tooLong;
    tooLong.isString = true;
    tooLong.text.assign(SetupFile::kMaxTextBytes + 1, 'x');
    EXPECT_FALSE(file().set(SetupFile::kCount, SetupFile::Value()));
    EXPECT_FALSE(file().set(0, tooLong));
    EXPECT_EQ(problems.size(), 2u);
    EXPECT_EQ(juce::File(path()).getSize(), (juce::int64)text.size());
}

TEST_F(SetupFileTest, AHostileFileNeverReplacesWhatWasRead)
{
    ASSERT_TRUE(juce::File(path()).replaceWithText("lmcom-setup 1\n4 int 44\n"));
    ASSERT_EQ(file().get(4, 0)->number, 44);

    // A FIFO, a device, a file too large, a file of another version: refused and reported
    // once each, the values read before stay, and a writer does not overwrite them.
    const auto target = path().toStdString();
    auto replaceWith = [&](const std::function<void()>& make)
    {
        unlink(target.c_str());
        make();
        problems.clear();
        EXPECT_EQ(file().get(4, 0)->number, 44);
        EXPECT_EQ(file().get(4, 0)->number, 44);
        EXPECT_EQ(problems.size(), 1u) << (problems.empty() ? "" : problems[0]);
        EXPECT_FALSE(file().set(5, SetupFile::Value()));
    };
    replaceWith([&] { ASSERT_EQ(mkfifo(target.c_str(), 0600), 0); });
    replaceWith([&] { ASSERT_EQ(symlink("/dev/zero", target.c_str()), 0); });
    replaceWith(
        [&]
        {
            ASSERT_TRUE(juce::File(path()).create());
            ASSERT_EQ(truncate(target.c_str(), SetupFile::kMaxFileBytes + 1), 0);
        });
    replaceWith([&] { juce::File(path()).replaceWithText("lmcom-setup 2\n4 int 1\n"); });

    // A file that comes back readable is read again at once.
    unlink(target.c_str());
    ASSERT_TRUE(juce::File(path()).replaceWithText("lmcom-setup 1\n4 int 45\n"));
    EXPECT_EQ(file().get(4, 0)->number, 45);
    unlink(target.c_str());
    EXPECT_FALSE(file().get(4, 0).has_value());
}
