#include "Message/MsgSession.h"

#include "AppIdentity.h"
#include "LogBridge.h"
#include "Message/BroadcastReceiver.h"
#include "Message/detail/Crc32c.h"
#include "Platform/Atomic.h"
#include "Platform/BusStatistics.h"
#include "Platform/Endpoint.h"
#include "Platform/SharedMemory.h"

#include <atomic>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

int MsgSession::m_nSender = -1;
MsgSession::DestNameResolver MsgSession::m_fnGetDestName = nullptr;

namespace
{
const char* const kSource = "Message/MsgSession_win32";
const char* const kTag = "MsgSession";
const unsigned char kRecordMagic[4] = {'m', 's', 'g', 0};

// Header fields of the ring, each a 4-byte aligned int32.
constexpr int kHeaderTotalSize = 0;
constexpr int kHeaderDataStart = 4;
constexpr int kHeaderNextWrite = 8;
constexpr int kHeaderDataEnd = 12;

// The ring's mapping, made once and kept for the life of the process.
std::mutex sMapLock;
std::atomic<unsigned char*> sBase{nullptr};
// Kept reachable (volatile: never optimised away) but never freed.
Platform::SharedMemory* volatile sShared = nullptr;
// The bus's counters for tools; null when they cannot be had, which changes nothing else.
std::atomic<Platform::BusStatistics*> sStatistics{nullptr};

void countRefusedPost()
{
    if (auto* statistics = sStatistics.load())
        statistics->postRefused();
}

volatile std::int32_t* headerField(unsigned char* base, int offset)
{
    return reinterpret_cast<volatile std::int32_t*>(base + offset);
}

// The header is written by whoever makes the ring; the total size goes last, so an opener that
// sees it sees the rest.
void writeHeader(unsigned char* base)
{
    Platform::SharedInt32::store(headerField(base, kHeaderDataStart), MsgSession::kDataStart);
    Platform::SharedInt32::store(headerField(base, kHeaderNextWrite), MsgSession::kDataStart);
    Platform::SharedInt32::store(headerField(base, kHeaderDataEnd), MsgSession::kRingSize);
    Platform::SharedInt32::store(headerField(base, kHeaderTotalSize), MsgSession::kRingSize);
}

bool waitForHeader(unsigned char* base)
{
    for (int attempt = 0; attempt < 200; ++attempt)
    {
        if (Platform::SharedInt32::load(headerField(base, kHeaderTotalSize)) == MsgSession::kRingSize)
            return true;
        juce::Thread::sleep(5);
    }
    return false;
}

// The ring's limits never change after its header is written; they are taken as the constants
// they are, so that nothing another process writes into the header can move a record outside
// the mapping.
void ringLimits(unsigned char*, int& dataStart, int& dataEnd)
{
    dataStart = MsgSession::kDataStart;
    dataEnd = MsgSession::kRingSize;
}

unsigned int byteSum(const unsigned char* p, int n)
{
    unsigned int sum = 0;
    for (int i = 0; i < n; ++i)
        sum += p[i];
    return sum & 0xFFFF;
}

// Writes one record and returns its offset; 0 when the ring is not mapped (callers test only
// for -1 and post offset 0, which every receiver rejects: kept as it is), -1 when the payload
// cannot fit the ring.
int writeRecord(const unsigned char* payload, int n)
{
    unsigned char* base = sBase.load();
    if (base == nullptr)
        return 0;
    int dataStart, dataEnd;
    ringLimits(base, dataStart, dataEnd);
    if (n < 0 || (juce::int64)dataStart + n + MsgSession::kRecordOverhead > dataEnd)
    {
        LogBridge::instance().logError(
            kSource, 310, kTag, "writeRecord error | payload of " + juce::String(n) + " bytes does not fit the ring");
        countRefusedPost();
        return -1;
    }

    auto* statistics = sStatistics.load();
    const std::uint32_t number = statistics != nullptr ? statistics->beginRecord() : 0;
    // Only the reservation is shared; it is one compare-and-swap on the next-write field.
    auto* next = headerField(base, kHeaderNextWrite);
    std::int32_t current = Platform::SharedInt32::load(next);
    int offset;
    for (;;)
    {
        offset = current;
        if (offset < dataStart || (juce::int64)offset + n + MsgSession::kRecordOverhead > dataEnd)
            offset = dataStart; // wrap
        if (Platform::SharedInt32::compareExchange(next, current, offset + MsgSession::kRecordOverhead + n))
            break;
    }
    if (statistics != nullptr && offset != current)
        statistics->publishLap(current, number);

    unsigned char* record = base + offset;
    std::memcpy(record, kRecordMagic, 4);
    record[4] = (unsigned char)(n & 0xFF);
    record[5] = (unsigned char)((n >> 8) & 0xFF);
    if (n > 0)
        std::memcpy(record + 6, payload, (size_t)n);
    const unsigned int sum = byteSum(payload, n);
    record[6 + n] = (unsigned char)(sum & 0xFF);
    record[7 + n] = (unsigned char)(sum >> 8);
    if (statistics != nullptr)
        statistics->endRecord();
    return offset;
}

/** Checks the record (offset, n) and copies its payload out of the ring. With a check, the
    copy must also match the sender's CRC-32C, so a record overwritten or torn since it was
    announced is never taken for it. */
bool readRecord(int offset, int n, const juce::uint32* check, juce::MemoryBlock& payload)
{
    unsigned char* base = sBase.load();
    if (base == nullptr || n == 0)
    {
        LogBridge::instance().logErrorF(kSource, 42, kTag, "Please Init MsgSession First!");
        return false;
    }
    int dataStart, dataEnd;
    ringLimits(base, dataStart, dataEnd);
    // ">=" on purpose: a record that ends exactly at the data end is rejected, as every
    // reader of this ring has always done.
    if (offset < dataStart || n < 0 || (juce::int64)offset + n + MsgSession::kRecordOverhead >= dataEnd)
        return false;

    const unsigned char* record = base + offset;
    if (std::memcmp(record, kRecordMagic, 4) != 0)
        return false;
    const int storedLength = record[4] | (record[5] << 8);
    if (storedLength != n)
        return false;

    payload.replaceAll(record + 6, (size_t)n);
    const auto* copy = static_cast<const unsigned char*>(payload.getData());
    const unsigned int storedSum = record[6 + n] | (record[7 + n] << 8);
    if (byteSum(copy, n) != storedSum)
        return false;
    return check == nullptr || LmComDetail::Crc32c::of(copy, (size_t)n) == *check;
}

Parcelable::Ptr rebuild(const juce::MemoryBlock& payload)
{
    auto parcel = Parcel::obtain();
    parcel->fillData(payload.getData(), (int)payload.getSize());
    auto object = createFromParcel(parcel.get());
    parcel->recycle();
    return object;
}

//==============================================================================
// Endpoints of this process, by id, with their consumers. Message thread only.
struct WindowRecord
{
    std::unique_ptr<Platform::Endpoint> endpoint;
    IMsgProc* proc;
};
std::map<juce::int64, WindowRecord>& windows()
{
    static std::map<juce::int64, WindowRecord> records;
    return records;
}

std::set<const BroadcastReceiver*>& receivers()
{
    static std::set<const BroadcastReceiver*> registered;
    return registered;
}

void deliverBroadcast(const juce::MemoryBlock& payload)
{
    auto object = rebuild(payload);
    Bundle::Ptr outer(dynamic_cast<Bundle*>(object.get()));
    if (outer == nullptr)
        return;
    const auto action = outer->getString("action", {});
    // A snapshot in address order; a receiver destroyed meanwhile is skipped.
    const std::vector<const BroadcastReceiver*> snapshot(receivers().begin(), receivers().end());
    for (auto* receiver : snapshot)
    {
        if (receivers().count(receiver) == 0 || !receiver->isContaintAction(action))
            continue;
        const_cast<BroadcastReceiver*>(receiver)->onReceive(action, outer->getBundle("bundle"));
    }
    outer->recycle();
}

void windowProc(juce::int64 id, const Platform::WindowMessage& message)
{
    // Below the user range only WM_COPYDATA is ever looked at; there are no system messages.
    if (message.msg < 1024 && message.msg != 74)
        return;
    auto it = windows().find(id);
    if (it == windows().end() || it->second.proc == nullptr)
        return;
    IMsgProc* proc = it->second.proc;

    juce::MemoryBlock payload;
    if (message.msg == MsgSession::kMsgWindowMessage)
    {
        if (!readRecord(message.wParam, message.lParam, &message.check, payload))
        {
            proc->procUnknownMsg(message.msg, message.wParam, message.lParam);
            return;
        }
        auto object = rebuild(payload);
        // Only a RemoteMessage is a message; a record that rebuilds to nothing is dropped.
        RemoteMessage::Ptr received(dynamic_cast<RemoteMessage*>(object.get()));
        object = nullptr;
        if (received == nullptr)
            return;
        proc->procOwnerMsg(received);
        received->recycle();
        return;
    }
    if (message.msg == MsgSession::kBroadcastWindowMessage)
    {
        if (!readRecord(message.wParam, message.lParam, &message.check, payload))
            proc->procUnknownMsg(message.msg, message.wParam, message.lParam);
        else
            deliverBroadcast(payload);
        return;
    }
    proc->procUnknownMsg(message.msg, message.wParam, message.lParam);
}

// A flattened object written into the ring, with the check that travels beside it.
struct WrittenRecord
{
    int offset = -1;
    int length = 0;
    juce::uint32 check = 0;
};

WrittenRecord writeObject(Parcelable& object)
{
    auto parcel = Parcel::obtain();
    object.writeToParcel(parcel.get());
    WrittenRecord written;
    written.length = parcel->dataSize();
    written.check = LmComDetail::Crc32c::of(parcel->data(), (size_t)written.length);
    written.offset = writeRecord(parcel->data(), written.length);
    parcel->recycle();
    return written;
}

Platform::WindowMessage windowMessage(int msg, const WrittenRecord& record)
{
    return {msg, record.offset, record.length, record.check};
}
} // namespace

//==============================================================================
MsgSession::MsgSession(IMsgProc* proc)
{
    init(proc);
}

MsgSession::~MsgSession()
{
    if (m_window == nullptr)
        return;
    // Ids are never reused: a copy's second destroy finds nothing and touches nothing.
    windows().erase((juce::int64)(juce::pointer_sized_int)m_window);
}

void MsgSession::config(int sender, DestNameResolver getDestName)
{
    m_nSender = sender;
    m_fnGetDestName = getDestName;
}

const char* MsgSession::getDestName(int eAppType)
{
    if (m_fnGetDestName == nullptr)
        return "";
    const char* name = m_fnGetDestName(eAppType);
    return name != nullptr ? name : "";
}

bool MsgSession::mapSharedArea()
{
    const std::lock_guard<std::mutex> lock(sMapLock);
    if (sBase.load() != nullptr)
        return true;

    // Made once and never freed: the ring stays mapped until the process ends.
    auto* shared = new Platform::SharedMemory("LmIPCMsgShareMem");
    unsigned char* base = nullptr;
    if (shared->open(kRingSize))
    {
        base = shared->data();
        if (!waitForHeader(base))
            writeHeader(base); // its maker died before finishing it
    }
    else if (shared->create(kRingSize))
    {
        base = shared->data();
        writeHeader(base);
    }
    else if (shared->open(kRingSize)) // made by another process meanwhile
    {
        base = shared->data();
        if (!waitForHeader(base))
            writeHeader(base);
    }

    if (base == nullptr)
    {
        LogBridge::instance().logError(kSource, 300, kTag, "map LmIPCMsgShareMem error | " + shared->lastError());
        delete shared;
        return false;
    }
    // Made once and never freed, like the ring; without it messaging works all the same. Set
    // before the ring, so that every record this process writes is counted.
    auto* statistics = new Platform::BusStatistics();
    if (statistics->openOrCreate())
        sStatistics = statistics;
    else
        delete statistics;
    sShared = shared;
    sBase = base;
    return true;
}

const unsigned char* MsgSession::sharedAreaBase()
{
    return sBase.load();
}

bool MsgSession::init(IMsgProc* proc)
{
    if (m_bInitialised != 0 || m_fnGetDestName == nullptr)
        return false;
    const juce::String name = getDestName(m_nSender);
    m_proc = proc;
    LogBridge::instance().logInfo(kSource, 281, kTag,
                                  juce::String("init AppType: ") + appTypeName(m_nSender) + " name: " + name);

    const auto createAgain = []
    {
        LogBridge::instance().logError(kSource, 284, kTag,
                                       juce::String("init AppType: ") + appTypeName(m_nSender) + " create again!");
        return false;
    };
    if (Platform::Endpoint::isAlive(name))
        return createAgain();

    Platform::Endpoint::OpenResult result;
    juce::String error;
    auto endpoint = Platform::Endpoint::open(name, &windowProc, result, error);
    if (result == Platform::Endpoint::OpenResult::nameInUse)
        return createAgain();
    if (endpoint == nullptr)
    {
        LogBridge::instance().logError(kSource, 290, kTag,
                                       juce::String("init AppType: ") + appTypeName(m_nSender) + " error: " + error);
        return false;
    }
    if (!mapSharedArea())
        return false; // the endpoint closes as it goes

    const auto id = endpoint->id();
    m_window = (void*)(juce::pointer_sized_int)id;
    windows()[id] = WindowRecord{std::move(endpoint), proc};
    m_bInitialised = 1;
    return true;
}

namespace
{
enum class Prepared
{
    written,
    noDestination,
    notWritten
};

// What a post and a send share: stamp the sender, find the destination, write the record.
Prepared prepare(int dest, const RemoteMessage::Ptr& msg, juce::String& name, WrittenRecord& record)
{
    msg->sender = MsgSession::m_nSender;
    if (MsgSession::m_fnGetDestName == nullptr)
        return Prepared::noDestination;
    name = MsgSession::getDestName(dest);
    if (!Platform::Endpoint::exists(name))
        return Prepared::noDestination;
    record = writeObject(*msg);
    return record.offset == -1 ? Prepared::notWritten : Prepared::written;
}
} // namespace

bool MsgSession::postMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    const auto fail = [dest]
    {
        LogBridge::instance().logError(kSource, 338, kTag,
                                       juce::String("postMessage error | send : ") + appTypeName(m_nSender)
                                           + " dest: " + appTypeName(dest));
        countRefusedPost();
        return false;
    };
    if (msg == nullptr)
        return false;
    juce::String name;
    WrittenRecord record;
    const auto prepared = prepare(dest, msg, name, record);
    if (prepared != Prepared::written)
        return prepared == Prepared::noDestination ? fail() : false;
    if (Platform::Endpoint::post(name, windowMessage(kMsgWindowMessage, record)))
        return true;
    // Gone since it was found: the same error; a queue that stayed full fails quietly.
    if (!Platform::Endpoint::exists(name))
        return fail();
    countRefusedPost();
    return false;
}

bool MsgSession::sendMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    const auto fail = [dest]
    {
        LogBridge::instance().logError(kSource, 365, kTag, juce::String("sendMessage error | ") + appTypeName(dest));
        countRefusedPost();
        return false;
    };
    if (msg == nullptr)
        return false;
    juce::String name;
    WrittenRecord record;
    const auto prepared = prepare(dest, msg, name, record);
    if (prepared != Prepared::written)
        return prepared == Prepared::noDestination ? fail() : false;
    if (!Platform::Endpoint::send(name, windowMessage(kMsgWindowMessage, record)))
        return fail();
    return true;
}

bool MsgSession::broadcastMessage(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg)
{
    if (msg == nullptr)
        return true;
    msg->sender = m_nSender;
    const auto record = writeObject(*msg); // one record serves every destination
    if (record.offset == -1)
        return true;
    for (int type = 0; type <= Pubhead::eAppType::AppUnknown; ++type)
    {
        if (type == Pubhead::eAppType::AppNavi || type == m_nSender)
            continue;
        Platform::Endpoint::post(getDestName(type), windowMessage(kMsgWindowMessage, record));
    }
    return true;
}

bool MsgSession::sendBroadcast(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle)
{
    auto outer = Bundle::obtain();
    outer->putString("action", action);
    outer->putBundle("bundle", bundle);
    const auto record = writeObject(*outer);
    outer->recycle();
    if (record.offset == -1)
        return true;
    // The sender's own process is not skipped: its receivers get its broadcasts too.
    for (int type = 0; type <= Pubhead::eAppType::AppUnknown; ++type)
    {
        if (type == Pubhead::eAppType::AppNavi)
            continue;
        Platform::Endpoint::post(getDestName(type), windowMessage(kBroadcastWindowMessage, record));
    }
    return true;
}

int MsgSession::putParcelable(const juce::ReferenceCountedObjectPtr<Parcelable>& obj, int& size)
{
    if (obj == nullptr)
        return -1;
    const auto record = writeObject(*obj);
    if (record.offset == -1)
        return -1;
    size = record.length;
    return record.offset;
}

const juce::ReferenceCountedObjectPtr<Parcelable> MsgSession::getParcelable(int offset, int size)
{
    juce::MemoryBlock payload;
    if (!readRecord(offset, size, nullptr, payload))
        return nullptr;
    return rebuild(payload);
}

bool MsgSession::registerReceiver(const BroadcastReceiver& receiver)
{
    receivers().insert(&receiver);
    return true;
}

bool MsgSession::unregisterRecevier(const BroadcastReceiver& receiver)
{
    return receivers().erase(&receiver) != 0;
}

void MsgSession::purgeAll()
{
    windows().clear();
}
