#include "Utils/CorvaneConfig.h"

#include "Platform/IniFile.h"
#include "Utils/AppConfig.h"

bool CorvaneConfig::isUseSDAsUsb()
{
    // The cache flag is never set, so the file is read on every call: kept deliberately, a
    // changed setting is seen at once.
    static const bool sbUseSDAsUsbCached = false;
    static const bool sbUseSDAsUsb = false;
    if (sbUseSDAsUsbCached)
        return sbUseSDAsUsb;
    Platform::IniFile ini(AppConfig::getApplicationPath() + "Bin/QN_MAIN.ini");
    return ini.getInt("USB", "USBAsSD", -1) != 0;
}
