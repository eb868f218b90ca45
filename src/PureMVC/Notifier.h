#pragma once

#include "PureMVC/FastMutex.h"
#include "PureMVC/Notification.h"

namespace PureMVC
{

class Facade;

/** The base of everything that sends notifications from inside a core: proxies, mediators
    and commands. The core gives each actor its multiton key when it registers or creates it;
    from then on sendNotification goes to that core's facade.

    Any thread. An actor whose core has been removed (or that was never registered) sends
    nothing: it never brings a removed core back.
*/
class Notifier
{
public:
    virtual ~Notifier() = default;

    /** Builds a Notification and sends it through the core's facade (to the observers of name,
        on the calling thread, before this returns). */
    virtual void sendNotification(int name, Notification::Body body = nullptr, const juce::String& type = {});

    /** Sets the core's key; the core calls it when it takes or creates the actor. */
    virtual void initializeNotifier(const juce::String& key);
    /** The core's key, empty before the actor has joined a core. */
    juce::String getMultitonKey() const;

protected:
    /** The facade of this actor's core, or null when there is none (see the class). */
    juce::ReferenceCountedObjectPtr<Facade> getFacade() const;

private:
    FastMutex m_keyLock;
    juce::String m_multitonKey;
};

} // namespace PureMVC
