#pragma once

#include "Message/Parcel.h"

#include <gtest/gtest.h>
#include <juce_core/juce_core.h>

#include <functional>
#include <string>
#include <vector>

namespace LmComTesting
{

/** Gives each test a private bus (LMCOM_BUS) and a private file-system root (LMCOM_ROOT) with
    the fake logging library installed, and removes the root afterwards. */
class LmComTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /** The real path of a system path under this test's root. */
    juce::File systemFile(const juce::String& systemPath) const;
    /** Writes a file under this test's root, making its folders. */
    void writeSystemFile(const juce::String& systemPath, const juce::String& content) const;

    juce::File m_root;
    juce::String m_bus;
};

/** Lines recorded by the fake logging library loaded in this process:
    "level|file|line|tag|text". */
struct LogLines
{
    static std::vector<std::string> all();
    static void clear();
    /** Number of recorded lines equal to the given one. */
    static int count(const std::string& line);
};

/** Makes the fake logging library visible under a root (a link, so every root shares one
    loaded copy). */
void installFakeLogcat(const juce::File& root);

/** Hex text ("01 00 00 00") of bytes, for golden comparisons. */
std::string hex(const void* data, int size);
/** Bytes from hex text; blanks are ignored. */
std::vector<unsigned char> unhex(const std::string& text);
/** A Parcel holding the bytes of hex text, its cursor at 0. */
Parcel::Ptr parcelOf(const std::string& hexText);
/** The hex text of a Parcel's data. */
std::string bytesOf(const Parcel::Ptr& parcel);

/** Runs work on a thread of its own and waits up to timeoutMs for it; false when it is still
    running (the thread is then left behind, so a test of a hang fails instead of hanging). */
bool finishesWithin(int timeoutMs, std::function<void()> work);

/** A role that a child process of the test binary can play: argv after the role name in,
    exit status out. */
using ChildRole = std::function<int(const std::vector<std::string>& args)>;
bool registerChildRole(const std::string& name, ChildRole role);
int runChildRole(const std::string& name, const std::vector<std::string>& args);

} // namespace LmComTesting

#define LMCOM_CONCAT_INNER(a, b) a##b
#define LMCOM_CONCAT(a, b) LMCOM_CONCAT_INNER(a, b)
/** Defines a child role: LMCOM_CHILD_ROLE(name) { ... return 0; } with `args` in scope. */
#define LMCOM_CHILD_ROLE(name)                                                                                         \
    static int LMCOM_CONCAT(childRole_, name)(const std::vector<std::string>& args);                                   \
    static const bool LMCOM_CONCAT(childRoleRegistered_, name) =                                                       \
        LmComTesting::registerChildRole(#name, &LMCOM_CONCAT(childRole_, name));                                       \
    static int LMCOM_CONCAT(childRole_, name)([[maybe_unused]] const std::vector<std::string>& args)
