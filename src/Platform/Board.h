#pragma once

#include <juce_core/juce_core.h>

#include <array>
#include <memory>
#include <optional>

namespace Platform
{

/** What the board itself answers: versions, identities and the few display and camera
    controls that the head unit's kernel and display driver took.

    The process has one current board: the Linux board by default, or one a test installs.
    Every answer that does not exist on the board is the caller's failure value: an empty
    text, no value, false. Any thread.
*/
class Board
{
public:
    virtual ~Board() = default;

    /** The operating system's version text; "" when unknown. */
    virtual juce::String osVersion() = 0;
    /** The boot loader's version text; "" when unknown. */
    virtual juce::String bootVersion() = 0;
    /** The SD card's identity (its CID as hex digits); nothing when no card is known. */
    virtual std::optional<juce::String> sdCardId() = 0;
    /** The board's 16-byte unique identity; nothing when it has none. */
    virtual std::optional<std::array<unsigned char, 16>> uuid() = 0;
    /** Takes the camera back from whatever else drives it; false when the board cannot. */
    virtual bool retrieveCameraControl() = 0;
    /** Switches the display's video format for a window (the name of the endpoint that shows
        the video; "" for none); false when the board's display has no such control. */
    virtual bool setDisplayFormat(const juce::String& window, int formatCode) = 0;

    /** The current board. */
    static std::shared_ptr<Board> current();
    /** Makes a board current (null: back to the Linux board). */
    static void install(std::shared_ptr<Board> board);

    /** The board of this machine, reading system files under `systemRoot` ("/" normally;
        a test points it at a folder of its own). */
    static std::unique_ptr<Board> linuxBoard(const juce::String& systemRoot = "/");
};

} // namespace Platform
