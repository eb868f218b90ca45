// The examples' two event-loop shapes and the README's runnable snippets, each a real program
// on the test's bus, beside the reference main service.
#include "support/Command.h"
#include "support/TestSupport.h"

#include "Platform/Endpoint.h"

#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <thread>

using namespace LmComTesting;

namespace
{
class ExamplesTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        // The shipped logging library: what the programs log is on their standard error.
        auto library = systemFile("/NandFlash/Application/Bin/libQN_Logcat.so");
        library.deleteFile();
        ASSERT_EQ(symlink(LMCOM_LOGCAT, library.getFullPathName().toRawUTF8()), 0);
#ifndef LMCOM_EXAMPLE_JUCEAPP
        GTEST_SKIP() << "the tools and examples are not built (LMCOM_BUILD_TOOLS=OFF)";
#else
        m_main = std::make_unique<Command>(LMCOM_MAINSERVICE, std::vector<std::string>{"--heartbeat-ms", "200"});
        ASSERT_TRUE(m_main->waitForLine("up as 'NavigRecive'"));
#endif
    }

    /** Stops the main service as a power-off would and checks that it ended well. */
    void powerOff()
    {
        m_main->kill(SIGTERM);
        EXPECT_TRUE(m_main->waitForLine("[main] done"));
        EXPECT_EQ(m_main->waitForExit(), 0);
    }

    /** The error lines a program logged. */
    static std::vector<std::string> errorsOf(const Command& program)
    {
        std::vector<std::string> errors;
        for (auto& line : program.err())
            if (line.find(" E/") != std::string::npos)
                errors.push_back(line);
        return errors;
    }

    std::unique_ptr<Command> m_main;
};
} // namespace

#ifdef LMCOM_EXAMPLE_JUCEAPP
TEST_F(ExamplesTest, BothEventLoopShapesConnectShowTheirPagesAndQuitOnRequest)
{
    Command juceApp(LMCOM_EXAMPLE_JUCEAPP, {});
    ASSERT_TRUE(juceApp.waitForLine("[juceapp] connected"));
    EXPECT_TRUE(juceApp.waitForLine("[juceapp] view show (1725) 0"));
    EXPECT_TRUE(m_main->waitForLine("AppRadio: page 0 SrvRadio is shown (1728)"));

    // The console program takes the page over: the JUCE application hides its own.
    Command consoleApp(LMCOM_EXAMPLE_CONSOLEAPP, {});
    ASSERT_TRUE(consoleApp.waitForLine("[consoleapp] connected"));
    EXPECT_TRUE(consoleApp.waitForLine("[consoleapp] view show (1725) 15"));
    EXPECT_TRUE(m_main->waitForLine("AppAuxIn: page 15 SrvAuxIn is shown (1728)"));
    EXPECT_TRUE(juceApp.waitForLine("[juceapp] page hidden, done (1729) 0"));
    EXPECT_TRUE(m_main->waitForLine("AppRadio: page 0 SrvRadio finished hiding (1729)"));
    EXPECT_TRUE(m_main->waitForLine("AppRadio: page 0 SrvRadio hidden by command line (1730)"));
    EXPECT_TRUE(m_main->waitForLine("AppAuxIn: heartbeat answered (1748)"));

    powerOff();
    EXPECT_TRUE(m_main->waitForLine("AppRadio: power-off ready (1204) with 5"));
    EXPECT_TRUE(m_main->waitForLine("AppAuxIn: power-off ready (1204) with 9"));
    EXPECT_TRUE(m_main->waitForLine("every application has quit"));
    EXPECT_TRUE(consoleApp.waitForLine("[consoleapp] quit (1199) 0"));
    EXPECT_EQ(juceApp.waitForExit(), 0);
    EXPECT_EQ(consoleApp.waitForExit(), 0);
    EXPECT_TRUE(juceApp.waitForLine("[juceapp] stopped 0"));
    // Nothing was missing: no error was logged on the way.
    EXPECT_EQ(errorsOf(juceApp), std::vector<std::string>{});
    EXPECT_EQ(errorsOf(consoleApp), std::vector<std::string>{});
}

TEST_F(ExamplesTest, ReadmeSnippetsRunAsTheReadmeSays)
{
    // Messaging: the posted record arrives intact, and so does the broadcast of the same
    // Bundle afterwards.
    auto messaging = Command::run(LMCOM_SNIPPET_MESSAGING, {});
    EXPECT_EQ(messaging.status, 0);
    EXPECT_EQ(messaging.out, std::vector<std::string>{"news: InforText '101.1 MHz'"});
    EXPECT_TRUE(m_main->waitForLine("AppRadio: info bar (1184) tuner source 0 band '' text '101.1 MHz' action 255"));
    EXPECT_TRUE(m_main->waitForLine("AppRadio: beep (1137) with 0"));

    // The listener hears a broadcast sent from the command line once its endpoint is up.
    Command listener(LMCOM_SNIPPET_LISTENER, {});
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!Platform::Endpoint::isAlive("MainMenu") && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    ASSERT_TRUE(Platform::Endpoint::isAlive("MainMenu"));
    auto broadcast = Command::run(LMCOM_TOOL, {"broadcast", "news", "--string", "text=hello"});
    EXPECT_EQ(broadcast.status, 0);
    EXPECT_TRUE(listener.waitForLine("news: hello"));
    listener.kill(SIGTERM);
    EXPECT_EQ(listener.waitForExit(), 128 + SIGTERM);

    powerOff();
}
#endif
