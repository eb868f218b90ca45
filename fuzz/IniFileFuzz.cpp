// Any bytes as an ini file, read the way the configuration readers read it.
#include "Platform/IniFile.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static const juce::File file = juce::File::createTempFile(".ini");
    file.replaceWithData(data, size);
    Platform::IniFile ini(file.getFullPathName());
    ini.getString("NAVIGATION", "TITLE", {});
    ini.getString("Fonts", "Font1", {});
    ini.getInt("USB", "USBAsSD", -1);
    ini.getInt("", "", 0);
    return 0;
}
