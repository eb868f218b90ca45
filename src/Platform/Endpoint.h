#pragma once

#include <juce_core/juce_core.h>

#include <functional>
#include <memory>

namespace Platform
{

/** A window message as it travels between endpoints: the message number, its two parameters
    and the sender's check of the payload it refers to. */
struct WindowMessage
{
    int msg = 0;
    int wParam = 0;
    int lParam = 0;
    juce::uint32 check = 0;
};

/** One process's named mailbox on the bus: a Unix-domain datagram socket in the bus folder,
    served on the JUCE message thread.

    A name is held by one live endpoint at a time; an endpoint left behind by a dead process is
    reclaimed by the next open. Only processes of the same user can reach an endpoint.
*/
class Endpoint
{
public:
    /** Called on the message thread for each message that arrives, with the endpoint's id. */
    using Handler = std::function<void(juce::int64 endpointId, const WindowMessage&)>;

    enum class OpenResult
    {
        opened,
        nameInUse,
        failed
    };

    /** How long a post waits for room in a full destination queue. */
    static constexpr int kPostWaitMs = 100;
    /** How many messages an endpoint keeps aside while its thread waits in a post or send. */
    static constexpr int kBacklogLimit = 4096;

    /** Opens the endpoint of a name on the current bus. Call on the JUCE message thread (the
        MessageManager is made if there is none). nameInUse when a live endpoint has the name;
        failed (with error set) when the bus folder or socket cannot be used. */
    static std::unique_ptr<Endpoint> open(const juce::String& name, Handler handler, OpenResult& result,
                                          juce::String& error);
    /** Closes the endpoint: nothing more is delivered to its handler. Message thread. */
    ~Endpoint();

    /** A number that names this endpoint and is never reused within the process. */
    juce::int64 id() const { return m_nId; }
    const juce::String& name() const { return m_name; }

    /** Whether this process can reach an endpoint of this name. Answered from the connection
        kept for posting when there is one, so an endpoint that closed since is still reported
        until a post to it fails (which forgets it). Any thread. */
    static bool exists(const juce::String& name);

    /** Whether a live endpoint holds this name right now (asks the system, never a cache).
        Any thread. */
    static bool isAlive(const juce::String& name);

    /** Queues a message for the named endpoint without waiting for it to be handled. When the
        destination's queue is full, waits up to kPostWaitMs for room (on the message thread,
        meanwhile keeping this process's own incoming messages aside for later), then gives up.
        False when there is no such endpoint or it stayed full. Any thread. */
    static bool post(const juce::String& name, const WindowMessage& message);

    /** Delivers a message and returns once the destination's handler has run, or when the
        destination is absent, dies or closes. On the message thread, incoming sends to this
        process are served meanwhile (two processes sending to each other never deadlock), and
        a send to one of this process's own endpoints calls its handler at once. False only
        when there is no such endpoint. Any thread. */
    static bool send(const juce::String& name, const WindowMessage& message);

    struct Listing
    {
        juce::String name;
        bool alive;
    };
    /** The endpoints present in the bus folder, and whether each is alive; none when the
        folder is refused (BusFolder::check tells why). */
    static std::vector<Listing> list();

    /** Handles messages kept aside while this process waited. Message thread. */
    static void processBacklogs();

    struct Impl;

private:
    Endpoint() = default;
    friend struct EndpointAccess;

    juce::int64 m_nId = 0;
    juce::String m_name;
    std::unique_ptr<Impl> m_impl;

    JUCE_DECLARE_NON_COPYABLE(Endpoint)
};

} // namespace Platform
