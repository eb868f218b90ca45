#pragma once

#include <juce_core/juce_core.h>

namespace Platform
{

/** Makes the fonts of a font list available to this process through fontconfig (as
    application fonts of its current configuration). Where the library was built without
    fontconfig, it does nothing.

    The font list is an ini file:

        [Fonts]
        Font1=DejaVuSans.ttf
        Font2=/Resource/Fonts/Extra/NotoSansCJK.ttc

    Keys Font1, Font2, ... are read in order up to the first missing or empty one (at most
    kMaxFonts). A relative name is taken from the list's own folder; a name that starts with a
    slash (or a backslash) is a system path, placed under the file-system root. Any thread; one
    call at a time.
*/
struct FontLoader
{
    static constexpr int kMaxFonts = 256;

    /** Whether fontconfig is there to register fonts with. */
    static bool isAvailable();

    /** Registers each font of the list (a real path); returns how many fontconfig accepted.
        0 for a missing or empty list and without fontconfig; a missing or unreadable font is
        skipped. */
    static int loadFontList(const juce::String& listPath);

    /** The real paths of the fonts a list names, in order (what loadFontList tries). */
    static juce::StringArray listedFonts(const juce::String& listPath);
};

} // namespace Platform
