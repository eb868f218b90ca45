#include "Utils/LmShareMem.h"

#include "LogBridge.h"
#include "Platform/detail/Utf8.h"
#include "Utils/detail/SettingsStore.h"

using LmComDetail::SettingsStore;

static_assert((int)SysInfoCount == Platform::SettingsSegment::kSysInfoCount, "one numbering of system values");
static_assert((int)SetupCount == Platform::SetupFile::kCount, "one numbering of setup items");
static_assert(SettingsStore::kSourceCount <= Platform::SettingsSegment::kSourceCount, "sources fit the segment");

namespace
{
const char* const kSource = "Utils/LmShareMem";
const char* const kTag = "LmShareMem";

/** Logs an index outside [0, count) and says whether it is inside. */
bool inRange(const char* operation, int index, int count, int line)
{
    if (index >= 0 && index < count)
        return true;
    LogBridge::instance().logError(kSource, line, kTag,
                                   juce::String(operation) + ": index " + juce::String(index) + " is outside 0.."
                                       + juce::String(count - 1));
    return false;
}

std::optional<Platform::SetupFile::Value> setupValue(const char* operation, int index, int line)
{
    if (!inRange(operation, index, SetupCount, line))
        return std::nullopt;
    return SettingsStore::setupFile().get(index, SettingsStore::segment().setupGeneration());
}

bool setSetupValue(const char* operation, int index, const Platform::SetupFile::Value& value, int line)
{
    if (!inRange(operation, index, SetupCount, line) || !SettingsStore::setupFile().set(index, value))
        return false;
    // Other processes read the file again when they see the generation move.
    SettingsStore::segment().bumpSetupGeneration();
    return true;
}
} // namespace

int QN_GetSysInfo(SysInfoIndex index)
{
    std::int32_t value = 0;
    if (inRange("QN_GetSysInfo", index, SysInfoCount, __LINE__))
        SettingsStore::segment().getSysInfo(index, value);
    return value;
}

void QN_SetSysInfo(SysInfoIndex index, int value)
{
    if (inRange("QN_SetSysInfo", index, SysInfoCount, __LINE__))
        SettingsStore::segment().setSysInfo(index, value);
}

bool QN_GetSrcState(Pubhead::eAppServiceType::EnumTypeTag source)
{
    std::int32_t value = 0;
    if (inRange("QN_GetSrcState", source, SettingsStore::kSourceCount, __LINE__))
        SettingsStore::segment().getSource(source, value);
    return value != 0;
}

bool QN_SetSrcState(Pubhead::eAppServiceType::EnumTypeTag source, bool available)
{
    return inRange("QN_SetSrcState", source, SettingsStore::kSourceCount, __LINE__)
           && SettingsStore::segment().setSource(source, available ? 1 : 0);
}

int QN_GetSetupValueInt(SetupIndex index)
{
    const auto value = setupValue("QN_GetSetupValueInt", index, __LINE__);
    return value && !value->isString ? value->number : 0;
}

juce::String QN_GetSetupValueString(SetupIndex index)
{
    const auto value = setupValue("QN_GetSetupValueString", index, __LINE__);
    if (!value || !value->isString)
        return {};
    // The file is untrusted: its bytes become text only through the checked decoder.
    return LmComDetail::decodeUtf8(reinterpret_cast<const unsigned char*>(value->text.data()), value->text.size());
}

bool QN_IsSetupValueString(SetupIndex index)
{
    const auto value = setupValue("QN_IsSetupValueString", index, __LINE__);
    return value && value->isString;
}

bool QN_SetSetupValueInt(SetupIndex index, int value)
{
    Platform::SetupFile::Value item;
    item.number = value;
    return setSetupValue("QN_SetSetupValueInt", index, item, __LINE__);
}

bool QN_SetSetupValueString(SetupIndex index, const juce::String& value)
{
    Platform::SetupFile::Value item;
    item.isString = true;
    item.text = value.toStdString();
    return setSetupValue("QN_SetSetupValueString", index, item, __LINE__);
}
