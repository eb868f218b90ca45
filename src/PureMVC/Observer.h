#pragma once

#include "PureMVC/Notification.h"

#include <atomic>
#include <functional>

namespace PureMVC
{

/** One interest in a notification name: the function to call and the object it belongs to
    (its context, compared by address when the interest is removed).

    The function holds what it needs to stay alive (a mediator's observer holds the mediator),
    so a delivery that has begun can always finish. Once the View removes the observer it is
    no longer notified, including from a delivery already under way that has not reached it yet.
    Any thread.
*/
class Observer : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Observer>;
    using NotifyMethod = std::function<void(const Notification::Ptr&)>;

    Observer(NotifyMethod notifyMethod, const void* notifyContext)
        : m_notifyMethod(std::move(notifyMethod)), m_notifyContext(notifyContext)
    {
    }

    /** Calls the function unless the observer has been removed. */
    void notifyObserver(const Notification::Ptr& notification) const
    {
        if (m_active.load(std::memory_order_acquire) && m_notifyMethod)
            m_notifyMethod(notification);
    }
    bool compareNotifyContext(const void* object) const { return m_notifyContext == object; }
    const void* getNotifyContext() const { return m_notifyContext; }

    /** No further notifications (the View calls it when it removes the observer). */
    void deactivate() { m_active.store(false, std::memory_order_release); }
    bool isActive() const { return m_active.load(std::memory_order_acquire); }

private:
    const NotifyMethod m_notifyMethod;
    const void* const m_notifyContext;
    std::atomic<bool> m_active{true};
};

} // namespace PureMVC
