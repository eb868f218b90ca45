#include "Platform/Endpoint.h"

#include "Platform/BusFolder.h"

#include "Platform/PosixCall.h"
#include "Platform/detail/Utf8.h"

#include <juce_events/juce_events.h>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <map>
#include <mutex>

namespace Platform
{

namespace
{
// Every datagram on a bus has this fixed form; anything else is dropped unread.
constexpr juce::uint32 kKindPost = 0x4C4D0001;
constexpr juce::uint32 kKindSend = 0x4C4D0002;
constexpr juce::uint32 kKindAck = 0x4C4D0003;

struct Datagram
{
    juce::uint32 kind;
    juce::int32 msg;
    juce::int32 wParam;
    juce::int32 lParam;
    juce::uint32 check;
    juce::uint32 sequence;
};
static_assert(sizeof(Datagram) == 24, "the datagram is 24 bytes on every peer");

// A bounded wake-up keeps timers alive under a flood; the rest waits for the next wake-up.
constexpr int kMaxPerWakeUp = 1024;
// How often a waiting send checks that its destination still lives.
constexpr int kAliveCheckMs = 20;

struct Socket
{
    explicit Socket(int descriptor) : fd(descriptor) {}
    ~Socket()
    {
        if (fd >= 0)
            close(fd);
    }
    const int fd;
};
using SocketPtr = std::shared_ptr<Socket>;

struct Received
{
    Datagram datagram;
    sockaddr_un from;
    socklen_t fromLength;
};

using Clock = std::chrono::steady_clock;

int remainingMs(Clock::time_point deadline)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left > 0 ? (int)left : 0;
}

juce::uint64 hashName(const juce::String& name)
{
    juce::uint64 hash = 1469598103934665603ull;
    for (auto* p = name.toRawUTF8(); *p != 0; ++p)
        hash = (hash ^ (unsigned char)*p) * 1099511628211ull;
    return hash;
}

// The file names of an endpoint, without their ".sock" / ".lock" endings. Socket paths are
// limited to 107 bytes, so a long name is shortened and made unique by a hash.
juce::String fileStem(const juce::String& folder, const juce::String& name)
{
    auto encoded = BusFolder::encodeName(name);
    if ((folder + encoded + ".sock").getNumBytesAsUTF8() > 100)
        encoded = encoded.substring(0, 40) + "~" + juce::String::toHexString((juce::int64)hashName(name));
    return folder + encoded;
}

bool makeAddress(const juce::String& path, sockaddr_un& address, socklen_t& length)
{
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    const auto bytes = path.getNumBytesAsUTF8();
    if (bytes + 1 > sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.toRawUTF8(), bytes);
    length = (socklen_t)(offsetof(sockaddr_un, sun_path) + bytes + 1);
    return true;
}

// A lock file is opened without following a link or waiting on a FIFO planted in its place,
// and only a regular file counts.
int openLockFile(const juce::String& path, int flags)
{
    auto opened = posixCall(
        [&] { return ::open(path.toRawUTF8(), flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600); });
    if (opened.failed())
        return -1;
    struct stat info = {};
    if (fstat(opened.value, &info) != 0 || !S_ISREG(info.st_mode))
    {
        close(opened.value);
        errno = EINVAL;
        return -1;
    }
    return opened.value;
}

// An endpoint lives while its owner holds the exclusive lock on its lock file; the kernel
// drops the lock when the owner closes it or dies.
bool isAliveStem(const juce::String& stem)
{
    const int fd = openLockFile(stem + ".lock", O_RDONLY);
    if (fd < 0)
        return false;
    const bool free = flock(fd, LOCK_SH | LOCK_NB) == 0;
    close(fd);
    return !free;
}

// The socket path of a name, only when the bus folder is safe to use.
bool checkedAddress(const juce::String& name, sockaddr_un& address, socklen_t& length)
{
    juce::String error;
    return BusFolder::check(error) && makeAddress(fileStem(BusFolder::path(), name) + ".sock", address, length);
}

SocketPtr connectTo(const juce::String& name)
{
    sockaddr_un address;
    socklen_t length;
    if (!checkedAddress(name, address, length))
        return nullptr;
    auto made = posixCall([] { return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0); });
    if (made.failed())
        return nullptr;
    auto socketPtr = std::make_shared<Socket>(made.value);
    if (posixCall([&] { return connect(socketPtr->fd, (const sockaddr*)&address, length); }).failed())
        return nullptr;
    return socketPtr;
}

// One connected socket per destination: resolving the path on every send halves the rate.
std::mutex sCacheLock;
std::map<juce::String, SocketPtr> sConnected;

SocketPtr cachedSocket(const juce::String& name, bool reconnect)
{
    {
        const std::lock_guard<std::mutex> lock(sCacheLock);
        auto it = sConnected.find(name);
        if (it != sConnected.end() && !reconnect)
            return it->second;
    }
    auto fresh = connectTo(name);
    const std::lock_guard<std::mutex> lock(sCacheLock);
    if (fresh != nullptr)
        sConnected[name] = fresh;
    else
        sConnected.erase(name);
    return fresh;
}

void dropCached(const juce::String& name, const SocketPtr& which)
{
    const std::lock_guard<std::mutex> lock(sCacheLock);
    auto it = sConnected.find(name);
    if (it != sConnected.end() && it->second == which)
        sConnected.erase(it);
}

std::atomic<juce::int64> sNextId{1};
std::atomic<juce::uint32> sNextSequence{1};

bool onMessageThread()
{
    auto* manager = juce::MessageManager::getInstanceWithoutCreating();
    return manager != nullptr && manager->isThisTheMessageThread();
}
} // namespace

//==============================================================================
struct Endpoint::Impl
{
    juce::int64 id = 0;
    int fd = -1;
    int lockFd = -1;
    juce::String socketPath;
    Handler handler;
    std::deque<Received> backlog;
    // Cleared when the endpoint closes, so a loop that called the handler can tell whether
    // the handler closed it.
    std::shared_ptr<bool> open = std::make_shared<bool>(true);

    /** The next valid datagram pending on the socket; false when none is pending. */
    bool receiveOne(Received& out) const
    {
        for (;;)
        {
            Datagram datagram;
            out.fromLength = sizeof out.from;
            const ssize_t n = recvfrom(fd, &datagram, sizeof datagram, MSG_DONTWAIT | MSG_TRUNC, (sockaddr*)&out.from,
                                       &out.fromLength);
            if (n < 0)
            {
                if (errno == EINTR)
                    continue;
                return false;
            }
            if (n != (ssize_t)sizeof datagram || (datagram.kind != kKindPost && datagram.kind != kKindSend))
                continue; // not ours: dropped
            if (datagram.kind == kKindSend && out.fromLength <= (socklen_t)sizeof(sa_family_t))
                datagram.kind = kKindPost; // nobody to answer
            out.datagram = datagram;
            return true;
        }
    }

    void acknowledge(const Received& received) const
    {
        Datagram ack = received.datagram;
        ack.kind = kKindAck;
        // The waiting sender's socket receives nothing but this answer, so it has room;
        // retry briefly only in case of a transient failure.
        for (int attempt = 0; attempt < 50; ++attempt)
        {
            const ssize_t n = sendto(fd, &ack, sizeof ack, MSG_DONTWAIT | MSG_NOSIGNAL, (const sockaddr*)&received.from,
                                     received.fromLength);
            if (n == (ssize_t)sizeof ack || (n < 0 && errno != EAGAIN && errno != EINTR))
                return;
            juce::Thread::sleep(2);
        }
    }
};

struct EndpointAccess
{
    static Endpoint::Impl& impl(Endpoint& endpoint) { return *endpoint.m_impl; }
};

namespace
{
std::mutex sRegistryLock;
std::map<juce::int64, Endpoint*> sOpen;

Endpoint* findOpen(juce::int64 id)
{
    const std::lock_guard<std::mutex> lock(sRegistryLock);
    auto it = sOpen.find(id);
    return it != sOpen.end() ? it->second : nullptr;
}

Endpoint* findOpenByName(const juce::String& name)
{
    const std::lock_guard<std::mutex> lock(sRegistryLock);
    for (auto& entry : sOpen)
        if (entry.second->name() == name)
            return entry.second;
    return nullptr;
}

std::vector<juce::int64> openIds()
{
    const std::lock_guard<std::mutex> lock(sRegistryLock);
    std::vector<juce::int64> ids;
    for (auto& entry : sOpen)
        ids.push_back(entry.first);
    return ids;
}
} // namespace

// Calls the handler for one received message and answers a send; false when the handler
// closed the endpoint.
static bool dispatch(Endpoint::Impl& impl, const Received& received)
{
    auto stillOpen = impl.open;
    const WindowMessage message{received.datagram.msg, received.datagram.wParam, received.datagram.lParam,
                                received.datagram.check};
    impl.handler(impl.id, message);
    if (!*stillOpen)
        return false;
    if (received.datagram.kind == kKindSend)
        impl.acknowledge(received);
    return true;
}

// Serves one endpoint: what was kept aside first, then the socket, in arrival order.
static void serve(juce::int64 id)
{
    for (int served = 0; served < kMaxPerWakeUp; ++served)
    {
        auto* endpoint = findOpen(id);
        if (endpoint == nullptr)
            return;
        auto& impl = EndpointAccess::impl(*endpoint);
        Received received;
        if (!impl.backlog.empty())
        {
            received = impl.backlog.front();
            impl.backlog.pop_front();
        }
        else if (!impl.receiveOne(received))
            return;
        if (!dispatch(impl, received))
            return;
    }
}

void Endpoint::processBacklogs()
{
    for (auto id : openIds())
    {
        for (;;)
        {
            auto* endpoint = findOpen(id);
            if (endpoint == nullptr || EndpointAccess::impl(*endpoint).backlog.empty())
                break;
            auto received = EndpointAccess::impl(*endpoint).backlog.front();
            EndpointAccess::impl(*endpoint).backlog.pop_front();
            if (!dispatch(EndpointAccess::impl(*endpoint), received))
                break;
        }
    }
}

// What was kept aside while waiting is handled from the message loop, in order, before
// anything newer (serve() takes the backlog first).
static void scheduleBacklogs()
{
    // Only the message thread keeps messages aside (waitFor), and only it may read a backlog or
    // use an Endpoint* once the registry lock is released: endpoints close on that thread.
    if (!onMessageThread())
        return;
    bool pending = false;
    for (auto id : openIds())
        if (auto* endpoint = findOpen(id))
            pending = pending || !EndpointAccess::impl(*endpoint).backlog.empty();
    if (pending)
        juce::MessageManager::callAsync([] { Endpoint::processBacklogs(); });
}

/** Waits up to timeoutMs for `events` on fd. On the message thread, this process's own
    endpoints are drained meanwhile: sends are served at once when serveSends is set, every
    other message is kept aside (up to kBacklogLimit per endpoint). */
static bool waitFor(int fd, short events, int timeoutMs, bool serveSends)
{
    std::vector<pollfd> fds{{fd, events, 0}};
    std::vector<juce::int64> ids;
    if (onMessageThread())
    {
        for (auto id : openIds())
        {
            auto* endpoint = findOpen(id);
            if (endpoint != nullptr && (int)EndpointAccess::impl(*endpoint).backlog.size() < Endpoint::kBacklogLimit)
            {
                fds.push_back({EndpointAccess::impl(*endpoint).fd, POLLIN, 0});
                ids.push_back(id);
            }
        }
    }

    if (posixCall([&] { return poll(fds.data(), (nfds_t)fds.size(), timeoutMs); }).failed())
        return false;

    for (size_t i = 1; i < fds.size(); ++i)
    {
        if ((fds[i].revents & POLLIN) == 0)
            continue;
        auto* endpoint = findOpen(ids[i - 1]);
        while (endpoint != nullptr && (int)EndpointAccess::impl(*endpoint).backlog.size() < Endpoint::kBacklogLimit)
        {
            Received received;
            if (!EndpointAccess::impl(*endpoint).receiveOne(received))
                break;
            if (serveSends && received.datagram.kind == kKindSend)
            {
                if (!dispatch(EndpointAccess::impl(*endpoint), received))
                    break;
                endpoint = findOpen(ids[i - 1]);
            }
            else
                EndpointAccess::impl(*endpoint).backlog.push_back(received);
        }
    }
    return (fds[0].revents & (events | POLLERR | POLLHUP)) != 0;
}

//==============================================================================
std::unique_ptr<Endpoint> Endpoint::open(const juce::String& name, Handler handler, OpenResult& result,
                                         juce::String& error)
{
    result = OpenResult::failed;
    juce::MessageManager::getInstance(); // the loop that serves endpoints

    juce::String folder;
    if (!BusFolder::prepare(folder, error))
        return nullptr;
    const auto stem = fileStem(folder, name);

    auto impl = std::make_unique<Impl>();
    impl->lockFd = openLockFile(stem + ".lock", O_RDWR | O_CREAT);
    if (impl->lockFd < 0)
    {
        error = "cannot open " + stem + ".lock: " + juce::String(std::strerror(errno)) + " (it must be a regular file)";
        return nullptr;
    }
    if (posixCall([&] { return flock(impl->lockFd, LOCK_EX | LOCK_NB); }).failed())
    {
        close(impl->lockFd);
        result = OpenResult::nameInUse;
        return nullptr;
    }

    // The name is ours now: a socket file still there was left by a dead owner.
    impl->socketPath = stem + ".sock";
    unlink(impl->socketPath.toRawUTF8());
    sockaddr_un address;
    socklen_t length;
    auto made = posixCall([] { return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0); });
    if (made.failed() || !makeAddress(impl->socketPath, address, length)
        || posixCall([&] { return bind(made.value, (const sockaddr*)&address, length); }).failed())
    {
        error = "cannot bind " + impl->socketPath + ": " + juce::String(std::strerror(errno));
        if (!made.failed())
            close(made.value);
        close(impl->lockFd);
        return nullptr;
    }
    impl->fd = made.value;
    impl->handler = std::move(handler);

    std::unique_ptr<Endpoint> endpoint(new Endpoint());
    endpoint->m_nId = sNextId++;
    impl->id = endpoint->m_nId;
    endpoint->m_name = name;
    endpoint->m_impl = std::move(impl);
    {
        const std::lock_guard<std::mutex> lock(sRegistryLock);
        sOpen[endpoint->m_nId] = endpoint.get();
    }
    const auto id = endpoint->m_nId;
    juce::LinuxEventLoop::registerFdCallback(endpoint->m_impl->fd, [id](int) { serve(id); });
    result = OpenResult::opened;
    return endpoint;
}

Endpoint::~Endpoint()
{
    {
        const std::lock_guard<std::mutex> lock(sRegistryLock);
        sOpen.erase(m_nId);
    }
    *m_impl->open = false;
    juce::LinuxEventLoop::unregisterFdCallback(m_impl->fd);
    unlink(m_impl->socketPath.toRawUTF8());
    close(m_impl->fd);
    // The lock file stays: removing it could let two processes lock two different files of
    // the same name.
    close(m_impl->lockFd);
}

bool Endpoint::isAlive(const juce::String& name)
{
    juce::String error;
    return BusFolder::check(error) && isAliveStem(fileStem(BusFolder::path(), name));
}

bool Endpoint::exists(const juce::String& name)
{
    return cachedSocket(name, false) != nullptr;
}

bool Endpoint::post(const juce::String& name, const WindowMessage& message)
{
    const Datagram datagram{kKindPost, message.msg, message.wParam, message.lParam, message.check, 0};
    bool delivered = false, waited = false;
    for (int attempt = 0; attempt < 2 && !delivered; ++attempt)
    {
        auto target = cachedSocket(name, attempt > 0);
        if (target == nullptr)
            break;
        const auto deadline = Clock::now() + std::chrono::milliseconds(kPostWaitMs);
        for (;;)
        {
            const ssize_t n = ::send(target->fd, &datagram, sizeof datagram, MSG_DONTWAIT | MSG_NOSIGNAL);
            if (n == (ssize_t)sizeof datagram)
            {
                delivered = true;
                break;
            }
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            {
                const int left = remainingMs(deadline);
                if (left == 0)
                    break;
                waitFor(target->fd, POLLOUT, left, false);
                waited = true;
                continue;
            }
            // The destination went away (or was restarted): try a fresh connection once.
            dropCached(name, target);
            break;
        }
        if (!delivered && waited)
            break; // it stayed full
    }
    if (waited)
        scheduleBacklogs();
    return delivered;
}

bool Endpoint::send(const juce::String& name, const WindowMessage& message)
{
    if (onMessageThread())
    {
        if (auto* own = findOpenByName(name))
        {
            own->m_impl->handler(own->m_nId, message);
            return true;
        }
    }

    sockaddr_un address;
    socklen_t length;
    if (!checkedAddress(name, address, length))
        return false;
    auto made = posixCall([] { return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0); });
    if (made.failed())
        return false;
    Socket reply(made.value);
    // An abstract address of our own for the answer; connected to the destination, the socket
    // accepts datagrams from it alone.
    sockaddr_un autobind = {};
    autobind.sun_family = AF_UNIX;
    if (posixCall([&] { return bind(reply.fd, (const sockaddr*)&autobind, sizeof(sa_family_t)); }).failed()
        || posixCall([&] { return connect(reply.fd, (const sockaddr*)&address, length); }).failed())
        return false;

    const Datagram datagram{kKindSend, message.msg, message.wParam, message.lParam, message.check, sNextSequence++};
    for (;;)
    {
        const ssize_t n = ::send(reply.fd, &datagram, sizeof datagram, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (n == (ssize_t)sizeof datagram)
            break;
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        {
            if (!waitFor(reply.fd, POLLOUT, kAliveCheckMs, true) && !Endpoint::isAlive(name))
            {
                scheduleBacklogs();
                return true;
            }
            continue;
        }
        scheduleBacklogs();
        return true; // gone between the lookup and the send
    }

    for (;;)
    {
        if (waitFor(reply.fd, POLLIN, kAliveCheckMs, true))
        {
            Datagram answer;
            const ssize_t n = recv(reply.fd, &answer, sizeof answer, MSG_DONTWAIT | MSG_TRUNC);
            if (n == (ssize_t)sizeof answer && answer.kind == kKindAck && answer.sequence == datagram.sequence)
                break;
            continue;
        }
        if (!Endpoint::isAlive(name))
            break;
    }
    scheduleBacklogs();
    return true;
}

std::vector<Endpoint::Listing> Endpoint::list()
{
    // Read with readdir: JUCE's directory iterator takes a socket for a folder (S_IFSOCK
    // contains the S_IFDIR bit) and would list none.
    std::vector<Listing> listing;
    juce::String error;
    if (!BusFolder::check(error))
        return listing;
    const juce::String folder = BusFolder::path();
    DIR* directory = opendir(folder.toRawUTF8());
    if (directory == nullptr)
        return listing;
    while (const dirent* entry = readdir(directory))
    {
        const juce::String file = LmComDetail::decodeUtf8(entry->d_name);
        struct stat info = {};
        if (!file.endsWith(".sock") || lstat((folder + file).toRawUTF8(), &info) != 0 || !S_ISSOCK(info.st_mode))
            continue;
        const auto encoded = file.dropLastCharacters(5);
        listing.push_back({BusFolder::decodeName(encoded), isAliveStem(folder + encoded)});
    }
    closedir(directory);
    return listing;
}

} // namespace Platform
