#pragma once

#include "Platform/SettingsSegment.h"
#include "Platform/SetupFile.h"

namespace LmComDetail
{

/** The process's settings store (made on first use, with the bus and root then in force), for
    the QN_ functions and for tools that list it. Problems are logged with the tag "LmShareMem". */
struct SettingsStore
{
    /** Source states: service types 0 to kSourceCount - 1. */
    static constexpr int kSourceCount = 55;
    /** The setup file, as a system path under the file-system root. */
    static constexpr const char* kSetupFile = "/NandFlash/Application/Profile/QN_SetupValues.txt";

    static Platform::SettingsSegment& segment();
    static Platform::SetupFile& setupFile();
    /** Every setup item, as the file holds it now. */
    static Platform::SetupFile::Values setupValues();
};

} // namespace LmComDetail
