#include "Platform/BusFolder.h"

#include "Platform/Environment.h"

#include "Platform/PosixCall.h"
#include "Platform/detail/Utf8.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace Platform
{

namespace
{
juce::String topFolder()
{
    return "/tmp/lmcom-" + juce::String((int)getuid());
}

juce::String userName(uid_t uid)
{
    struct passwd entry = {};
    struct passwd* found = nullptr;
    char buffer[1024];
    if (getpwuid_r(uid, &entry, buffer, sizeof buffer, &found) == 0 && found != nullptr)
        return " (" + LmComDetail::decodeUtf8(found->pw_name) + ")";
    return {};
}

// Another user who made the folder first (or a link to theirs) could read every wake-up of
// the bus and plant files in it: such a folder is never used.
bool isSafe(const juce::String& folder, const struct stat& info, juce::String& error)
{
    if (S_ISDIR(info.st_mode) && info.st_uid == geteuid() && (info.st_mode & 077) == 0)
        return true;
    char mode[8];
    std::snprintf(mode, sizeof mode, "%04o", (unsigned)(info.st_mode & 07777));
    const juce::String what = S_ISLNK(info.st_mode)   ? "a symbolic link"
                              : S_ISDIR(info.st_mode) ? "a folder with mode " + juce::String(mode)
                                                      : juce::String("not a folder");
    error = "refusing " + folder + ": " + what + " owned by uid " + juce::String((int)info.st_uid)
            + userName(info.st_uid) + "; it must be a folder of uid " + juce::String((int)geteuid())
            + " with mode 0700. Have its owner (or root) remove it, or use another bus (LMCOM_BUS)";
    return false;
}

bool prepareFolder(const juce::String& folder, juce::String& error)
{
    const char* path = folder.toRawUTF8();
    auto made = posixCall([&] { return mkdir(path, 0700); });
    if (!made.failed())
        chmod(path, 0700); // whatever the umask said
    else if (made.error != EEXIST)
    {
        error = "cannot make " + folder + ": " + juce::String(made.message());
        return false;
    }

    struct stat info = {};
    if (lstat(path, &info) != 0)
    {
        error = "cannot read " + folder;
        return false;
    }
    return isSafe(folder, info, error);
}

// 1 safe, 0 missing, -1 refused.
int checkFolder(const juce::String& folder, juce::String& error)
{
    struct stat info = {};
    if (lstat(folder.toRawUTF8(), &info) != 0)
        return 0;
    return isSafe(folder, info, error) ? 1 : -1;
}

bool keepsAsIs(juce::juce_wchar c, bool first)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-'
           || (c == '.' && !first);
}
} // namespace

juce::String BusFolder::busDirectoryName()
{
    auto bus = Environment::busName();
    return bus.isEmpty() ? juce::String("default") : bus;
}

juce::String BusFolder::path()
{
    return topFolder() + "/" + encodeName(busDirectoryName()) + "/";
}

bool BusFolder::check(juce::String& error)
{
    error.clear();
    return checkFolder(topFolder(), error) == 1 && checkFolder(path().dropLastCharacters(1), error) == 1;
}

bool BusFolder::prepare(juce::String& folderPath, juce::String& error)
{
    if (!prepareFolder(topFolder(), error))
        return false;
    const auto bus = path();
    if (!prepareFolder(bus.dropLastCharacters(1), error))
        return false;
    folderPath = bus;
    return true;
}

juce::String BusFolder::encodeName(const juce::String& name)
{
    if (name.isEmpty())
        return "%";
    juce::String encoded;
    const char* utf8 = name.toRawUTF8();
    for (size_t i = 0; utf8[i] != 0; ++i)
    {
        const auto byte = (unsigned char)utf8[i];
        if (byte < 0x80 && keepsAsIs((juce::juce_wchar)byte, i == 0))
            encoded << (char)byte;
        else
            encoded << "%" << juce::String::toHexString((int)byte).paddedLeft('0', 2).toUpperCase();
    }
    return encoded;
}

juce::String BusFolder::decodeName(const juce::String& encoded)
{
    if (encoded == "%")
        return {};
    juce::MemoryOutputStream bytes;
    const char* text = encoded.toRawUTF8();
    for (size_t i = 0; text[i] != 0; ++i)
    {
        if (text[i] == '%' && text[i + 1] != 0 && text[i + 2] != 0)
        {
            bytes.writeByte((char)juce::String(text + i + 1, 2).getHexValue32());
            i += 2;
        }
        else
            bytes.writeByte(text[i]);
    }
    return LmComDetail::decodeUtf8(static_cast<const unsigned char*>(bytes.getData()), bytes.getDataSize());
}

} // namespace Platform
