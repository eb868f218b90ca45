#pragma once

#include "Message/Bundle.h"
#include "Message/IMsgProc.h"
#include "Message/RemoteMessage.h"

class BroadcastReceiver;

/** The transport between the processes of one head unit (one bus).

    A message is a RemoteMessage flattened into a Parcel and written as one record into a ring
    in shared memory that every process maps; the destination's endpoint is woken with the
    record's offset and length. Each receiving process owns one endpoint, named by its
    destination name, and one consumer (IMsgProc).

    Everything is process-wide (static) except the endpoint and consumer of a session object.
    init, destruction, receiver registration and delivery belong on the JUCE message thread;
    posting and sending work from any thread.
*/
class MsgSession
{
public:
    using DestNameResolver = const char* (*)(int);

    static constexpr int kRingSize = 262144;
    static constexpr int kDataStart = 16;
    static constexpr int kRecordOverhead = 8;
    /** The largest payload a record can carry; larger ones are refused. */
    static constexpr int kMaxPayload = kRingSize - kDataStart - kRecordOverhead;
    static constexpr int kMsgWindowMessage = 32778;
    static constexpr int kBroadcastWindowMessage = 32779;

    /** Null consumer, no endpoint. */
    MsgSession() = default;
    /** The same, then init(proc). */
    explicit MsgSession(IMsgProc* proc);
    /** Closes this object's endpoint, if it still exists. */
    ~MsgSession();
    /** Copies refer to the same endpoint; whichever is destroyed first closes it. */
    MsgSession(const MsgSession&) = default;
    MsgSession& operator=(const MsgSession&) = default;

    /** Opens this process's endpoint (named by the resolver's name for m_nSender) and maps the
        shared ring. False when already initialised, before config, when a live endpoint has
        the name ("create again!"), or when the ring or endpoint cannot be made. */
    bool init(IMsgProc* proc);
    /** The endpoint's id (never reused within the process), or null. */
    void* getNativeHandle() const { return m_window; }

    /** Sets this process's own eAppType and the name resolver; no check, a later call
        replaces both. */
    static void config(int sender, DestNameResolver getDestName);
    /** The resolver's name for a destination, or "" when no resolver is installed. */
    static const char* getDestName(int eAppType);

    /** Stamps the sender and queues the message for one process; does not wait for it to be
        handled. False (with a log line) when there is no such destination; false when its
        queue stayed full. Never recycles msg. */
    static bool postMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg);
    /** As postMessage, but returns after the destination handled the message (or died).
        True unless there is no such destination. */
    static bool sendMessage(int dest, const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg);
    /** One record, posted to every known process but this one and AppNavi. Always true. */
    static bool broadcastMessage(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg);
    /** A named broadcast to the receivers of every process, this one included (never AppNavi).
        Always true. */
    static bool sendBroadcast(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle);

    /** Writes any object into the ring: returns the record offset and sets size to the payload
        length; -1 (size untouched) for a null object or one too large for the ring. */
    static int putParcelable(const juce::ReferenceCountedObjectPtr<Parcelable>& obj, int& size);
    /** Rebuilds what putParcelable stored; null when the record does not validate. */
    static const juce::ReferenceCountedObjectPtr<Parcelable> getParcelable(int offset, int size);

    /** Adds a receiver (by identity); true, also when it was registered already. */
    static bool registerReceiver(const BroadcastReceiver& receiver);
    /** Removes a receiver; false when it was not registered. (The name is the interface's own.) */
    static bool unregisterRecevier(const BroadcastReceiver& receiver);

    /** Closes every endpoint of this process. */
    static void purgeAll();

    /** Maps the shared ring without opening an endpoint (tools that only write or watch). */
    static bool mapSharedArea();
    /** The mapped ring (kRingSize bytes), or null. For tools that watch it; read only. */
    static const unsigned char* sharedAreaBase();

    /** This process's own eAppType; -1 until config. */
    static int m_nSender;
    /** The resolver in force; null until config. */
    static DestNameResolver m_fnGetDestName;

private:
    IMsgProc* m_proc = nullptr;
    juce::int32 m_bInitialised = 0;
    void* m_window = nullptr;
};
