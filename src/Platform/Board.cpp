#include "Platform/Board.h"

#include "Platform/BoardProfile.h"
#include "Platform/detail/Utf8.h"

#include <sys/stat.h>

#include <mutex>

namespace Platform
{

namespace
{
// System files are small; anything longer is not what we look for.
constexpr int kMaxSystemFileBytes = 4096;

/** The Linux board: os-release, DMI or device-tree identities and the SD card's sysfs entry.
    Camera and display controls do not exist here. */
class LinuxBoard : public Board
{
public:
    explicit LinuxBoard(const juce::String& systemRoot) : m_root(systemRoot.trimCharactersAtEnd("/")) {}

    juce::String osVersion() override
    {
        for (auto* path : {"/etc/os-release", "/usr/lib/os-release"})
        {
            auto text = read(path);
            if (text.isEmpty())
                continue;
            juce::String version;
            for (auto& line : juce::StringArray::fromLines(text))
            {
                auto key = line.upToFirstOccurrenceOf("=", false, false).trim();
                auto value = line.fromFirstOccurrenceOf("=", false, false).trim().unquoted();
                if (key == "PRETTY_NAME" && value.isNotEmpty())
                    return value;
                if (key == "VERSION" || (key == "VERSION_ID" && version.isEmpty()))
                    version = value;
            }
            return version;
        }
        return {};
    }

    juce::String bootVersion() override
    {
        auto version = read("/sys/class/dmi/id/bios_version").trim();
        if (version.isEmpty())
            version = read("/sys/firmware/devicetree/base/chosen/u-boot,version").trim();
        return version;
    }

    std::optional<juce::String> sdCardId() override
    {
        // "DSK2:" names the card's block device; without an entry, the first SD card there is.
        juce::StringArray devices;
        auto node = BoardProfile::deviceNode("DSK2:");
        if (node.isNotEmpty())
            devices.add("/sys/class/block/" + node.fromLastOccurrenceOf("/", false, false) + "/device");
        else
            for (auto& folder :
                 juce::File(m_root + "/sys/bus/mmc/devices")
                     .findChildFiles(juce::File::findDirectories, false, "*", juce::File::FollowSymlinks::no))
                if (read("/sys/bus/mmc/devices/" + folder.getFileName() + "/type").trim() == "SD")
                    devices.add("/sys/bus/mmc/devices/" + folder.getFileName());
        devices.sort(false);
        for (auto& device : devices)
        {
            auto cid = read(device + "/cid").trim();
            if (cid.isNotEmpty() && cid.length() <= 32 && cid.containsOnly("0123456789abcdefABCDEF"))
                return cid;
        }
        return std::nullopt;
    }

    std::optional<std::array<unsigned char, 16>> uuid() override
    {
        // DMI gives a UUID text; a device tree gives a serial number, placed at the end.
        auto digits = read("/sys/class/dmi/id/product_uuid").trim().removeCharacters("-");
        if (digits.length() != 32)
            digits = read("/sys/firmware/devicetree/base/serial-number").trim();
        if (digits.isEmpty() || digits.length() > 32 || !digits.containsOnly("0123456789abcdefABCDEF"))
            return std::nullopt;
        digits = digits.paddedLeft('0', 32);
        std::array<unsigned char, 16> bytes{};
        for (int i = 0; i < 16; ++i)
            bytes[(size_t)i] = (unsigned char)digits.substring(2 * i, 2 * i + 2).getHexValue32();
        return bytes;
    }

    bool retrieveCameraControl() override { return false; }
    bool setDisplayFormat(const juce::String&, int) override { return false; }

private:
    juce::String read(const juce::String& path) const
    {
        const auto full = m_root + path;
        struct stat info
        {
        };
        if (::stat(full.toRawUTF8(), &info) != 0 || !S_ISREG(info.st_mode))
            return {};
        juce::FileInputStream in{juce::File(full)};
        if (!in.openedOk())
            return {};
        juce::MemoryBlock bytes;
        in.readIntoMemoryBlock(bytes, kMaxSystemFileBytes);
        return LmComDetail::decodeUtf8(static_cast<const unsigned char*>(bytes.getData()), bytes.getSize());
    }

    juce::String m_root;
};

std::mutex sLock;

std::shared_ptr<Board>& installed()
{
    static std::shared_ptr<Board> board;
    return board;
}
} // namespace

std::unique_ptr<Board> Board::linuxBoard(const juce::String& systemRoot)
{
    return std::make_unique<LinuxBoard>(systemRoot);
}

std::shared_ptr<Board> Board::current()
{
    std::lock_guard<std::mutex> lock(sLock);
    if (installed() == nullptr)
        installed() = linuxBoard();
    return installed();
}

void Board::install(std::shared_ptr<Board> board)
{
    std::lock_guard<std::mutex> lock(sLock);
    installed() = std::move(board);
}

} // namespace Platform
