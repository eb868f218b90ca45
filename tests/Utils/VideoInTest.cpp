// Video input over the board's libraries, loaded for real from fakes that record their calls.
#include "support/FakeBoard.h"
#include "support/MessageLoop.h"
#include "support/TestSupport.h"

#include "Platform/Endpoint.h"
#include "Utils/CameraControl.h"
#include "Utils/VideoIn.h"

#include <dlfcn.h>
#include <unistd.h>

using namespace LmComTesting;

namespace
{
class VideoInTest : public LmComTest
{
protected:
    /** Puts the fake libraries where the application directory's "/Bin/" is. */
    void installLibraries()
    {
        auto bin = systemFile("/NandFlash/Application/Bin");
        ASSERT_EQ(symlink(LMCOM_FAKE_VIDEOIN, bin.getChildFile("libLmVideoIn.so").getFullPathName().toRawUTF8()), 0);
        ASSERT_EQ(symlink(LMCOM_FAKE_OVERLAY, bin.getChildFile("libLmOverlayMgr.so").getFullPathName().toRawUTF8()), 0);
    }

    /** The calls a loaded fake library has seen, one per line. */
    static std::string calls(const char* library)
    {
        void* handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
        if (handle == nullptr)
            return "(not loaded)";
        auto read = reinterpret_cast<const char* (*)()>(dlsym(handle, "fakeVideoCalls"));
        std::string text = read != nullptr ? read() : "(no record)";
        dlclose(handle);
        return text;
    }
    static std::string videoCalls() { return calls(LMCOM_FAKE_VIDEOIN); }

    bool waitForCalls(const std::string& expected)
    {
        return m_loop.runUntil([&] { return videoCalls() == expected; }, 5000);
    }

    MessageLoop m_loop;
};
} // namespace

TEST_F(VideoInTest, TheTimerShowsOnceperRectangleAndHideCancels)
{
    installLibraries();
    VideoIn video;
    int window = 0;
    EXPECT_TRUE(video.open(&window));
    char created[64];
    std::snprintf(created, sizeof created, "create %p\n", (void*)&window);
    std::string expected = created;
    EXPECT_EQ(videoCalls(), expected);

    EXPECT_TRUE(video.show(VideoIn::eVideo1, 30, 10, 20, 320, 240));
    EXPECT_EQ(videoCalls(), expected); // not before the timer
    ASSERT_TRUE(waitForCalls(expected += "show 9 10 20 320 240\n"));
    EXPECT_TRUE(video.show(VideoIn::eVideo1, 30, 10, 20, 320, 240)); // same rectangle: nothing
    m_loop.runFor(150);
    EXPECT_EQ(videoCalls(), expected);
    EXPECT_TRUE(video.show(VideoIn::eVideo2, 0, 0, 0, 800, 480)); // new rectangle, delay 0 -> 1 ms
    ASSERT_TRUE(waitForCalls(expected += "show 11 0 0 800 480\n"));

    EXPECT_TRUE(video.hide());
    EXPECT_TRUE(video.show(VideoIn::eVideo3, 50, 1, 1, 1, 1));
    EXPECT_TRUE(video.hide()); // before the timer: the show is cancelled, nothing to close
    m_loop.runFor(150);
    EXPECT_EQ(videoCalls(), expected += "close\n");

    // The channel codes, and a type outside 1..6 marked shown without a call.
    const std::pair<VideoIn::_eVideoType, int> channels[] = {
        {VideoIn::eVideo4, 10}, {VideoIn::eVideo5, 12}, {VideoIn::eVideo6, 2}, {VideoIn::eVideo3, 1}};
    int x = 100;
    for (auto& [type, channel] : channels)
    {
        EXPECT_TRUE(video.show(type, 1, ++x, 0, 1, 1));
        ASSERT_TRUE(waitForCalls(expected += "show " + std::to_string(channel) + " " + std::to_string(x) + " 0 1 1\n"));
    }
    EXPECT_TRUE(video.show(VideoIn::_eVideoType(7), 1, 0, 0, 2, 2));
    m_loop.runFor(100);
    EXPECT_EQ(videoCalls(), expected);
    EXPECT_TRUE(video.hide()); // it was shown: closed
    video.createSnapShot();
    EXPECT_EQ(videoCalls(), expected += "close\nimage\n");

    // Copying moves: the source does nothing any more.
    VideoIn other(video);
    EXPECT_TRUE(video.show(VideoIn::eVideo1, 1, 5, 5, 5, 5));
    video.createSnapShot();
    m_loop.runFor(100);
    EXPECT_EQ(videoCalls(), expected);

    VideoIn::showUSBVideo();
    VideoIn::closeUSBVideo();
    EXPECT_EQ(calls(LMCOM_FAKE_OVERLAY), "show usb\nclose usb\n");
}

TEST_F(VideoInTest, WithoutTheLibrariesEverythingIsTrueAndNothingHappens)
{
    VideoIn video;
    EXPECT_TRUE(video.open(nullptr));
    EXPECT_TRUE(video.show(VideoIn::eVideo1, 1, 0, 0, 10, 10));
    m_loop.runFor(50);
    EXPECT_TRUE(video.hide());
    video.createSnapShot();
    VideoIn::showUSBVideo();
    VideoIn::closeUSBVideo();
    EXPECT_EQ(videoCalls(), "(not loaded)");
}

TEST_F(VideoInTest, DisplayFormatAndCameraGoThroughTheBoard)
{
    auto board = FakeBoard::install();
    for (int format : {7, 1, 9, 0, 2, -5})
        VideoIn::resetVideoFormat(format);
    // With the main service's endpoint alive, its name stands for the window.
    Platform::Endpoint::OpenResult result;
    juce::String error;
    auto mainService = Platform::Endpoint::open(
        "NavigRecive", [](juce::int64, const auto&) {}, result, error);
    ASSERT_NE(mainService, nullptr) << error;
    VideoIn::resetVideoFormat(7);
    const std::vector<std::pair<juce::String, int>> expected = {{"", 65}, {"", 49}, {"", 49},           {"", 34},
                                                                {"", 34}, {"", 34}, {"NavigRecive", 65}};
    EXPECT_EQ(board->displayFormats, expected);

    CameraControl camera;
    EXPECT_TRUE(camera.retrieveControl());
    board->controls = false;
    EXPECT_FALSE(camera.retrieveControl());
    CameraControl moved(camera);
    EXPECT_FALSE(moved.retrieveControl());
    EXPECT_EQ(board->cameraRetrievals, 3);
}
