#include "Platform/RegularFile.h"

#include "Platform/PosixCall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Platform
{

RegularFile::Status RegularFile::read(const char* path, juce::int64 maxBytes, juce::MemoryBlock& out)
{
    // O_NONBLOCK: opening a FIFO would otherwise wait for a writer.
    auto opened = posixCall([&] { return ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
    if (opened.failed())
        return Status::missing;
    const int fd = opened.value;
    struct stat info = {};
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode))
    {
        close(fd);
        return Status::notRegular;
    }
    if (info.st_size > maxBytes)
    {
        close(fd);
        return Status::tooLarge;
    }

    // The size is a hint only: the file may grow or shrink while it is read.
    juce::MemoryOutputStream content((size_t)info.st_size);
    char chunk[65536];
    Status status = Status::read;
    for (;;)
    {
        auto got = posixCall([&] { return ::read(fd, chunk, sizeof chunk); });
        if (got.failed())
        {
            status = Status::failed;
            break;
        }
        if (got.value == 0)
            break;
        if ((juce::int64)content.getDataSize() + got.value > maxBytes)
        {
            status = Status::tooLarge;
            break;
        }
        content.write(chunk, (size_t)got.value);
    }
    close(fd);
    if (status == Status::read)
        out = content.getMemoryBlock();
    return status;
}

bool RegularFile::isRegular(const char* path)
{
    struct stat info = {};
    return stat(path, &info) == 0 && S_ISREG(info.st_mode);
}

} // namespace Platform
