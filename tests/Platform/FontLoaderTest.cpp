// The font list and its registration with fontconfig.
#include "support/TestSupport.h"

#include "Platform/FontLoader.h"

#include <LmCom.h>

#if LMCOM_TEST_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

using namespace LmComTesting;

namespace
{
const char* const kFontList = "/NandFlash/Application//Resource/Fonts/font.ini";

using FontLoaderTest = LmComTest;

/** The application fonts fontconfig knows in this process, by file. */
juce::StringArray applicationFonts()
{
    juce::StringArray files;
#if LMCOM_TEST_FONTCONFIG
    if (FcFontSet* set = FcConfigGetFonts(nullptr, FcSetApplication))
        for (int i = 0; i < set->nfont; ++i)
        {
            FcChar8* file = nullptr;
            if (FcPatternGetString(set->fonts[i], FC_FILE, 0, &file) == FcResultMatch)
                files.add(juce::String::fromUTF8(reinterpret_cast<const char*>(file)));
        }
#endif
    return files;
}
} // namespace

TEST_F(FontLoaderTest, ListNamesFontsInOrderUpToTheFirstGap)
{
    const auto list = systemFile(kFontList).getFullPathName();
    writeSystemFile(kFontList, "; fonts of the head unit\n[Fonts]\nFont1=Sans.ttf\nFont2= \\Extra\\CJK.ttc \n"
                               "Font3=sub/Mono.ttf\nFont5=after-a-gap.ttf\n[Other]\nFont4=elsewhere.ttf\n");
    const auto folder = juce::File(list).getParentDirectory().getFullPathName();
    EXPECT_EQ(
        Platform::FontLoader::listedFonts(list),
        juce::StringArray(folder + "/Sans.ttf", m_root.getFullPathName() + "/Extra/CJK.ttc", folder + "/sub/Mono.ttf"));

    writeSystemFile(kFontList, "");
    EXPECT_TRUE(Platform::FontLoader::listedFonts(list).isEmpty());
    EXPECT_TRUE(Platform::FontLoader::listedFonts(list + ".missing").isEmpty());
    juce::String many = "[Fonts]\n";
    for (int i = 1; i <= 1000; ++i)
        many << "Font" << i << "=f" << i << ".ttf\n";
    writeSystemFile(kFontList, many);
    EXPECT_EQ(Platform::FontLoader::listedFonts(list).size(), Platform::FontLoader::kMaxFonts);
    EXPECT_EQ(Platform::FontLoader::loadFontList(list), 0); // none of them exists
}

TEST_F(FontLoaderTest, LoadFontRegistersTheListOncePerProcess)
{
    if (!Platform::FontLoader::isAvailable())
        GTEST_SKIP() << "LmCom was built without fontconfig: the font loader does nothing";
    const juce::File dejaVu("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    if (!dejaVu.existsAsFile())
        GTEST_SKIP() << "no DejaVu font on this machine (Debian package fonts-dejavu-core)";
    const auto font = systemFile("/NandFlash/Application/Resource/Fonts/Sans.ttf");
    font.getParentDirectory().createDirectory();
    ASSERT_TRUE(dejaVu.copyFileTo(font));
    writeSystemFile("/NandFlash/Application/Resource/Fonts/junk.ttf", "this is not a font");
    writeSystemFile(kFontList, "[Fonts]\nFont1=junk.ttf\nFont2=missing.ttf\nFont3=Sans.ttf\n");

    AppConfig::loadFont();
    AppConfig::loadFont();
    EXPECT_EQ(applicationFonts(), juce::StringArray(font.getFullPathName()));
    // The loader itself registers on every call and counts only real fonts.
    EXPECT_EQ(Platform::FontLoader::loadFontList(systemFile(kFontList).getFullPathName()), 1);
#if LMCOM_TEST_FONTCONFIG
    // fontconfig keeps its patterns in a form the leak checker cannot follow: release them.
    FcFini();
#endif
}
