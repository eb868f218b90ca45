#include "Utils/detail/SettingsStore.h"

#include "LogBridge.h"
#include "Platform/Environment.h"

namespace LmComDetail
{

namespace
{
void report(const juce::String& text)
{
    LogBridge::instance().logError("Utils/LmShareMem", __LINE__, "LmShareMem", text);
}
} // namespace

Platform::SettingsSegment& SettingsStore::segment()
{
    static Platform::SettingsSegment store(&report);
    return store;
}

Platform::SetupFile& SettingsStore::setupFile()
{
    static Platform::SetupFile file(Platform::Environment::resolve(kSetupFile), &report);
    return file;
}

Platform::SetupFile::Values SettingsStore::setupValues()
{
    return setupFile().getAll(segment().setupGeneration());
}

} // namespace LmComDetail
