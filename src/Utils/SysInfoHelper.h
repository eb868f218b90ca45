#pragma once

#include "Pubhead.h"

/** One-line access to the system-information values and source states of the settings store
    (LmShareMem): shared by every process of the bus, a write is seen by all at once. An index
    outside the store reads 0 (or false) and is logged. Any thread. */
class SysInfoHelper
{
public:
    static int getSysInfoInt(int index);
    static void setSysInfoInt(int index, int value);
    /** Whether a source is available. */
    static bool isSrcEnable(Pubhead::eAppServiceType::EnumTypeTag source);

private:
    SysInfoHelper() = delete;
};
