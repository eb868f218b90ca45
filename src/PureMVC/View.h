#pragma once

#include "PureMVC/Mediator.h"
#include "PureMVC/Mutex.h"
#include "PureMVC/Observer.h"

#include <functional>
#include <map>
#include <vector>

namespace PureMVC
{

/** The observers and mediators of one core.

    One View per multiton key (getInstance). Observers of a name are notified in the order they
    were registered. notifyObservers works on a snapshot of the name's observers taken when it
    starts: an observer or mediator registered during a delivery does not receive that
    notification; one removed during it is not notified any more (from then on), and stays
    alive until the delivery that holds it ends.

    Any thread: the maps are guarded, and the lock is never held while an observer, onRegister
    or onRemove runs. A core used from several threads therefore calls its mediators from
    several threads; a mediator removed on one thread may still finish a delivery that another
    thread had already begun.
*/
class View : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<View>;
    using Create = std::function<View*(const juce::String& key)>;

    /** Use getInstance: the core's View is the one in the multiton map. */
    explicit View(const juce::String& key) : m_multitonKey(key) {}

    /** The key's View; when there is none, one made by create (default: a View), then
        initializeView. */
    static Ptr getInstance(const juce::String& key, const Create& create = {});
    /** The key's View or null; never makes one. */
    static Ptr findInstance(const juce::String& key);
    /** Drops the key's View: every observer stops, every mediator is removed (onRemove). */
    static void removeView(const juce::String& key);

    /** Adds an observer at the end of the name's list. A null observer is ignored. */
    void registerObserver(int notificationName, Observer::Ptr observer);
    /** Removes (and stops) the name's observers whose context is notifyContext. */
    void removeObserver(int notificationName, const void* notifyContext);
    /** Notifies the observers of the notification's name, in order, on this thread. */
    void notifyObservers(const Notification::Ptr& notification);

    /** Takes the mediator (the View owns it from now on; the caller may keep its own Ptr), gives
        it the core's key, registers an observer for each name it lists, then calls onRegister.
        False for null or when a mediator of that name is there already: nothing is registered
        (the mediator is deleted unless someone else holds it). */
    bool registerMediator(Mediator* mediator);
    /** The mediator of that name, or null. */
    Mediator::Ptr retrieveMediator(int mediatorName) const;
    /** The mediator of that name as T, or null when there is none or it is another kind. */
    template <class T>
    juce::ReferenceCountedObjectPtr<T> retrieveMediator(int mediatorName) const
    {
        auto mediator = retrieveMediator(mediatorName);
        return dynamic_cast<T*>(mediator.get());
    }
    bool hasMediator(int mediatorName) const;
    /** Stops the mediator's observers, takes it out, calls onRemove and returns it (null when
        there was none). */
    Mediator::Ptr removeMediator(int mediatorName);

    const juce::String& getMultitonKey() const { return m_multitonKey; }

protected:
    /** Called once, right after the View is made by getInstance. */
    virtual void initializeView() {}

private:
    /** Under m_lock: stops and drops every observer whose context is notifyContext. */
    void removeObserversOf(const void* notifyContext);
    void removeAll();

    const juce::String m_multitonKey;
    Mutex m_lock;
    std::map<int, std::vector<Observer::Ptr>> m_observerMap;
    std::map<int, Mediator::Ptr> m_mediatorMap;
};

} // namespace PureMVC
