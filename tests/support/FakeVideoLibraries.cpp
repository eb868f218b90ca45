// Stand-ins for the board's video-input and overlay libraries, loaded at run time like the real
// ones: every call is kept as a line that a test reads back through fakeVideoCalls().
#include <cstdio>
#include <mutex>
#include <string>

namespace
{
std::mutex sLock;
std::string sCalls;

int record(const std::string& line)
{
    std::lock_guard<std::mutex> lock(sLock);
    sCalls += line + "\n";
    return 0;
}
} // namespace

#define FAKE_EXPORT extern "C" __attribute__((visibility("default")))

FAKE_EXPORT const char* fakeVideoCalls()
{
    std::lock_guard<std::mutex> lock(sLock);
    static std::string copy;
    copy = sCalls;
    return copy.c_str();
}

#if defined(FAKE_LMVIDEOIN)
FAKE_EXPORT int QN_ServiceCreate(void* window)
{
    char text[64];
    std::snprintf(text, sizeof text, "create %p", window);
    return record(text);
}
FAKE_EXPORT int QN_ShowVideo(int channel, int x, int y, int width, int height)
{
    return record("show " + std::to_string(channel) + " " + std::to_string(x) + " " + std::to_string(y) + " "
                  + std::to_string(width) + " " + std::to_string(height));
}
FAKE_EXPORT int QN_CloseVideo()
{
    return record("close");
}
FAKE_EXPORT int QN_GetVideoImage()
{
    return record("image");
}
#else
FAKE_EXPORT int QN_ShowUSBVideo()
{
    return record("show usb");
}
FAKE_EXPORT int QN_CloseUSBVideo()
{
    return record("close usb");
}
#endif
