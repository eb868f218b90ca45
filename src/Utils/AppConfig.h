#pragma once

#include "Pubhead.h"

#include <juce_core/juce_core.h>

/** Where an application finds things: the application directory, the executable of each page
    or service, resources, fonts and the system data path. Every path is a real path, the
    system path placed under the file-system root (LMCOM_ROOT). Static only; any thread.
*/
class AppConfig
{
public:
    /** "/NandFlash/Application/" under the root (ends with a slash); built once per process. */
    static juce::String getApplicationPath();
    /** The application directory followed by the executable that serves the type. For the
        navigation type, the "PATH" of section "NAVIGATION" in "Bin/QN_MAIN.ini" (a system
        path, placed under the root), read until it is not empty and then kept. "" for a type
        without executable, for a type outside 0..54, and while no navigation path is set. */
    static juce::String getAppPath(Pubhead::eAppServiceType::EnumTypeTag type);
    /** Exactly getAppPath. */
    static juce::String getBackAppPath(Pubhead::eAppServiceType::EnumTypeTag type);
    /** The first call in a process registers the fonts listed in the application directory's
        "/Resource/Fonts/font.ini" (Platform::FontLoader); later calls do nothing. */
    static void loadFont();
    /** The application directory followed by "/Resource/". The double slash is kept: it has
        always been there, and paths built from it are compared as they are. */
    static juce::String getResourcePath();
    /** The "DATAPATH" of section "PATH" in the application directory's
        "/Profile/QN_SysSettings.ini" (default "\BACKUP\QN_Config\"), placed under the root;
        the file is read on every call. */
    static juce::String getSystemFilePath();

private:
    AppConfig() = delete;
};
