#include "Platform/SharedMemory.h"

#include "Platform/BusFolder.h"
#include "Platform/PosixCall.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Platform
{

SharedMemory::SharedMemory(const juce::String& name) : m_systemName(systemNameFor(name)) {}

SharedMemory::~SharedMemory()
{
    if (m_pData != nullptr)
        munmap(m_pData, (size_t)m_nSize);
}

juce::String SharedMemory::systemNameFor(const juce::String& name)
{
    return "/lmcom-" + juce::String((int)getuid()) + "-" + BusFolder::encodeName(BusFolder::busDirectoryName()) + "-"
           + BusFolder::encodeName(name);
}

bool SharedMemory::mapDescriptor(int fd, int size)
{
    auto mapped =
        posixCall([&] { return mmap(nullptr, (size_t)size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0); }, MAP_FAILED);
    close(fd);
    if (mapped.failed())
    {
        m_lastError = "mmap: " + juce::String(mapped.message());
        return false;
    }
    m_pData = static_cast<unsigned char*>(mapped.value);
    m_nSize = size;
    return true;
}

bool SharedMemory::open(int size)
{
    if (m_pData != nullptr)
        return true;
    auto opened = posixCall([&] { return shm_open(m_systemName.toRawUTF8(), O_RDWR | O_CLOEXEC, 0600); });
    if (opened.failed())
    {
        m_lastError = opened.error == ENOENT ? juce::String() : "shm_open: " + juce::String(opened.message());
        return false;
    }
    const int fd = opened.value;

    // The creator sizes the mapping right after making it: wait a little for that, never map
    // fewer bytes than will be touched.
    struct stat info = {};
    for (int attempt = 0; attempt < 200; ++attempt)
    {
        if (fstat(fd, &info) != 0)
            break;
        if (info.st_size >= size)
            break;
        juce::Thread::sleep(5);
    }
    if (info.st_uid != geteuid() || (info.st_mode & 077) != 0)
    {
        m_lastError = "shared memory " + m_systemName + " belongs to another user or is open to others";
        close(fd);
        return false;
    }
    if (info.st_size < size)
    {
        m_lastError = "shared memory " + m_systemName + " is smaller than " + juce::String(size) + " bytes";
        close(fd);
        return false;
    }
    return mapDescriptor(fd, size);
}

bool SharedMemory::create(int size)
{
    if (m_pData != nullptr)
        return false;
    auto created =
        posixCall([&] { return shm_open(m_systemName.toRawUTF8(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600); });
    if (created.failed())
    {
        m_lastError = "shm_open: " + juce::String(created.message());
        return false;
    }
    const int fd = created.value;
    fchmod(fd, 0600); // whatever the umask says
    auto sized = posixCall([&] { return ftruncate(fd, (off_t)size); });
    if (sized.failed())
    {
        m_lastError = "ftruncate: " + juce::String(sized.message());
        close(fd);
        shm_unlink(m_systemName.toRawUTF8());
        return false;
    }
    return mapDescriptor(fd, size);
}

SharedMemory::RemoveResult SharedMemory::remove(const juce::String& name, juce::String& error)
{
    auto removed = posixCall([&] { return shm_unlink(systemNameFor(name).toRawUTF8()); });
    if (!removed.failed())
        return RemoveResult::removed;
    if (removed.error == ENOENT)
        return RemoveResult::absent;
    error = "shm_unlink " + systemNameFor(name) + ": " + juce::String(removed.message());
    return RemoveResult::failed;
}

} // namespace Platform
