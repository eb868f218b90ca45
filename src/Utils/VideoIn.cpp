#include "Utils/VideoIn.h"

#include "AppIdentity.h"
#include "Platform/Board.h"
#include "Platform/Endpoint.h"
#include "Platform/LibraryPath.h"
#include "Pubhead.h"

#include <juce_events/juce_events.h>

#include <mutex>

namespace
{
constexpr const char* kLibraryFolder = "/NandFlash/Application//Bin/";

using ServiceCreate = int (*)(void* window);
using ShowVideo = int (*)(int channel, int x, int y, int width, int height);
using NoArguments = int (*)();

std::unique_ptr<juce::DynamicLibrary> load(const char* dllName)
{
    auto library = std::make_unique<juce::DynamicLibrary>();
    for (auto& candidate : Platform::LibraryPath::candidates(kLibraryFolder, dllName))
        if (library->open(candidate))
            return library;
    return library;
}

template <typename Function>
Function find(juce::DynamicLibrary& library, const char* name)
{
    return reinterpret_cast<Function>(library.getFunction(name));
}

int channelOf(int type)
{
    switch (type)
    {
    case 1:
        return 9;
    case 2:
        return 11;
    case 3:
        return 1;
    case 4:
        return 10;
    case 5:
        return 12;
    case 6:
        return 2;
    default:
        return -1;
    }
}

int displayFormatCode(int format)
{
    if (format == 7)
        return 65;
    if (format == 1 || format == 9)
        return 49;
    return 34;
}

struct Overlay
{
    std::unique_ptr<juce::DynamicLibrary> library = load("LmOverlayMgr.dll");
    NoArguments show = find<NoArguments>(*library, "QN_ShowUSBVideo");
    NoArguments close = find<NoArguments>(*library, "QN_CloseUSBVideo");

    static Overlay& instance()
    {
        static Overlay overlay;
        return overlay;
    }
};
} // namespace

class VideoIn::Pimpl : public juce::Timer
{
public:
    std::unique_ptr<juce::DynamicLibrary> m_library = load("LmVideoIn.dll");
    ServiceCreate m_serviceCreate = find<ServiceCreate>(*m_library, "QN_ServiceCreate");
    ShowVideo m_showVideo = find<ShowVideo>(*m_library, "QN_ShowVideo");
    NoArguments m_closeVideo = find<NoArguments>(*m_library, "QN_CloseVideo");
    NoArguments m_getVideoImage = find<NoArguments>(*m_library, "QN_GetVideoImage");
    int m_eVideoType = 0;
    int m_x = 0, m_y = 0, m_width = 0, m_height = 0;
    bool m_bShown = false;

    ~Pimpl() override { stopTimer(); }

    void timerCallback() override
    {
        stopTimer();
        m_bShown = true;
        const int channel = channelOf(m_eVideoType);
        if (channel >= 0 && m_showVideo != nullptr)
            m_showVideo(channel, m_x, m_y, m_width, m_height);
    }
};

VideoIn::VideoIn() : m_pImpl(std::make_unique<Pimpl>()) {}
VideoIn::VideoIn(VideoIn& other) : m_pImpl(std::move(other.m_pImpl)) {}
VideoIn& VideoIn::operator=(VideoIn& other)
{
    if (this != &other)
    {
        m_pImpl.reset();
        m_pImpl = std::move(other.m_pImpl);
    }
    return *this;
}
VideoIn::~VideoIn() = default;

bool VideoIn::open(void* window)
{
    if (m_pImpl != nullptr && m_pImpl->m_serviceCreate != nullptr)
        m_pImpl->m_serviceCreate(window);
    return true;
}

bool VideoIn::show(_eVideoType type, int delayMs, int x, int y, int width, int height)
{
    JUCE_ASSERT_MESSAGE_THREAD
    auto* p = m_pImpl.get();
    if (p == nullptr)
        return true;
    const bool changed = x != p->m_x || y != p->m_y || width != p->m_width || height != p->m_height;
    if (changed)
    {
        p->m_x = x;
        p->m_y = y;
        p->m_width = width;
        p->m_height = height;
    }
    if (p->m_showVideo == nullptr)
        return true;
    p->m_eVideoType = type;
    if (p->m_bShown && !changed)
        return true;
    p->startTimer(juce::jmax(1, delayMs));
    return true;
}

bool VideoIn::hide()
{
    JUCE_ASSERT_MESSAGE_THREAD
    auto* p = m_pImpl.get();
    if (p == nullptr)
        return true;
    p->stopTimer();
    if (p->m_bShown)
    {
        p->m_bShown = false;
        if (p->m_closeVideo != nullptr)
            p->m_closeVideo();
    }
    return true;
}

void VideoIn::createSnapShot()
{
    if (m_pImpl != nullptr && m_pImpl->m_getVideoImage != nullptr)
        m_pImpl->m_getVideoImage();
}

void VideoIn::resetVideoFormat(int format)
{
    // The main service's endpoint stands for its window; none alive reads as no window.
    const juce::String mainService = getDestName(Pubhead::eAppType::AppMain);
    Platform::Board::current()->setDisplayFormat(
        Platform::Endpoint::isAlive(mainService) ? mainService : juce::String(), displayFormatCode(format));
}

void VideoIn::showUSBVideo()
{
    if (auto show = Overlay::instance().show)
        show();
}

void VideoIn::closeUSBVideo()
{
    if (auto close = Overlay::instance().close)
        close();
}
