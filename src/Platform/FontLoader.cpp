#include "Platform/FontLoader.h"

#include "Platform/Environment.h"
#include "Platform/IniFile.h"
#include "Platform/RegularFile.h"

#if LMCOM_HAVE_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

namespace Platform
{

bool FontLoader::isAvailable()
{
#if LMCOM_HAVE_FONTCONFIG
    return true;
#else
    return false;
#endif
}

juce::StringArray FontLoader::listedFonts(const juce::String& listPath)
{
    juce::StringArray fonts;
    IniFile list(listPath);
    if (!list.isLoaded())
        return fonts;
    const auto folder = juce::File(listPath).getParentDirectory();
    for (int i = 1; i <= kMaxFonts; ++i)
    {
        const auto name = list.getString("Fonts", "Font" + juce::String(i), {}).trim();
        if (name.isEmpty())
            break;
        if (name.startsWithChar('/') || name.startsWithChar('\\'))
            fonts.add(Environment::resolve(name));
        else
            fonts.add(folder.getChildFile(name.replaceCharacter('\\', '/')).getFullPathName());
    }
    return fonts;
}

int FontLoader::loadFontList(const juce::String& listPath)
{
#if LMCOM_HAVE_FONTCONFIG
    int registered = 0;
    for (const auto& font : listedFonts(listPath))
    {
        // fontconfig reads the file itself and refuses what is not a font; a FIFO would block it.
        if (RegularFile::isRegular(font.toRawUTF8())
            && FcConfigAppFontAddFile(nullptr, reinterpret_cast<const FcChar8*>(font.toRawUTF8())) == FcTrue)
            ++registered;
    }
    return registered;
#else
    juce::ignoreUnused(listPath);
    return 0;
#endif
}

} // namespace Platform
