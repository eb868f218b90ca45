#include "Platform/BusFolder.h"

#include "Platform/Environment.h"

#include "Message/detail/Utf8.h"
#include "Platform/PosixCall.h"

#include <sys/stat.h>
#include <unistd.h>

namespace Platform
{

namespace
{
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
    if (!S_ISDIR(info.st_mode) || info.st_uid != geteuid() || (info.st_mode & 077) != 0)
    {
        error = "refusing " + folder + ": not a folder of this user with mode 0700";
        return false;
    }
    return true;
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
    return "/tmp/lmcom-" + juce::String((int)getuid()) + "/" + encodeName(busDirectoryName()) + "/";
}

bool BusFolder::prepare(juce::String& folderPath, juce::String& error)
{
    const auto top = "/tmp/lmcom-" + juce::String((int)getuid());
    if (!prepareFolder(top, error))
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
