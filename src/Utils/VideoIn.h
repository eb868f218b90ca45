#pragma once

#include <juce_core/juce_core.h>

#include <memory>

/** A video input (camera, TV tuner, auxiliary video ...) shown in a rectangle of the screen by
    the board's video-input library "LmVideoIn.dll" (libLmVideoIn.so in the application
    directory's "/Bin/", else on the loader path), loaded when the object is made.

    show() starts a one-shot timer; when it fires the video is shown. Showing the same
    rectangle again while shown does nothing; a new one shows again after the delay; hide()
    cancels a pending show. Without the library every operation returns true and does
    nothing. show and hide run on the message thread only (the timer's). Copying moves the
    object: the source is left empty and its operations do nothing.
*/
class VideoIn
{
public:
    /** The video to show; the library's channel code for each is 1 -> 9, 2 -> 11, 3 -> 1,
        4 -> 10, 5 -> 12, 6 -> 2. Other values mark the video shown without calling it. */
    enum _eVideoType
    {
        eVideoNone = 0,
        eVideo1 = 1,
        eVideo2 = 2,
        eVideo3 = 3,
        eVideo4 = 4,
        eVideo5 = 5,
        eVideo6 = 6,
    };

    VideoIn();
    /** Takes the implementation over (deliberately non-const: ownership moves). */
    VideoIn(VideoIn& other);
    VideoIn& operator=(VideoIn& other);
    virtual ~VideoIn();

    /** Hands the window to the library's "QN_ServiceCreate"; always true. */
    bool open(void* window);
    /** Shows the video in the rectangle after `delayMs` (at least 1 ms); always true. */
    bool show(_eVideoType type, int delayMs, int x, int y, int width, int height);
    /** Cancels a pending show, or closes a shown video; always true. */
    bool hide();
    /** Asks the library for a snapshot ("QN_GetVideoImage"). */
    void createSnapShot();

    /** Switches the display's video format (7 -> 65; 1 and 9 -> 49; others -> 34) for the
        main service's window, through the board. Any thread. */
    static void resetVideoFormat(int format);
    /** The overlay library "LmOverlayMgr.dll", loaded on first use and kept: show or close the
        USB video. Any thread. */
    static void showUSBVideo();
    static void closeUSBVideo();

private:
    class Pimpl;
    std::unique_ptr<Pimpl> m_pImpl;
};
