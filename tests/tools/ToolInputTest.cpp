// The lmcom tool under hostile arguments: bytes that are not UTF-8, special files.
#include "support/Command.h"
#include "support/TestSupport.h"

#include <LmCom.h>

#include <sys/stat.h>

using namespace LmComTesting;

namespace
{
using ToolInputTest = LmComTest;

const std::string kOverlongNul = "\xC0\x80";

Command::Result lmcom(const std::vector<std::string>& args)
{
    return Command::run(LMCOM_TOOL, args, 5000);
}
} // namespace

TEST_F(ToolInputTest, ArgumentsThatAreNotUtf8AreRefusedOrReplaced)
{
    EXPECT_EQ(lmcom({"post", kOverlongNul, "1"}).status, 2);
    EXPECT_EQ(lmcom({"monitor", "--sender", "\xA0" + kOverlongNul}).status, 2);
    const auto value = lmcom({"post", "Radio", "1", "--string", "k=" + kOverlongNul});
    EXPECT_EQ(value.status, 2);
    EXPECT_EQ(value.err, std::vector<std::string>{"lmcom: post: --string k is not valid UTF-8"});
    EXPECT_EQ(lmcom({"broadcast", "a" + kOverlongNul}).status, 2);
    // The bus name, taken through the environment.
    EXPECT_EQ(lmcom({"--bus", kOverlongNul + "\xFF", "list"}).status, 0);
}

TEST_F(ToolInputTest, DecodeReadsOnlyRegularFilesWithAnyName)
{
    const auto fifo = m_root.getChildFile("fifo").getFullPathName().toStdString();
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const auto fromFifo = lmcom({"decode", "parcel", "@" + fifo});
    EXPECT_EQ(fromFifo.status, 1);
    EXPECT_EQ(fromFifo.err, std::vector<std::string>{"lmcom: decode: " + fifo + " is not a regular file"});
    EXPECT_EQ(lmcom({"decode", "parcel", "@/dev/zero"}).status, 1);

    // A file whose name is not UTF-8 is read by its own bytes.
    const std::string name = m_root.getFullPathName().toStdString() + "/\xC0\x80\xFF";
    auto bundle = Bundle::obtain();
    bundle->putInt("k", 1);
    const auto parcel = bundle->writeToParcel();
    FILE* file = std::fopen(name.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fwrite(parcel->data(), 1, (size_t)parcel->dataSize(), file);
    std::fclose(file);
    EXPECT_EQ(lmcom({"decode", "parcel", "@" + name}).status, 0);
    EXPECT_EQ(lmcom({"decode", "parcel", "@" + name + "x"}).status, 1);
}
