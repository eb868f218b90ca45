#pragma once

#include "PureMVC/Notifier.h"

#include <atomic>

namespace PureMVC
{

/** The go-between of one view component and the rest of the core, under an int name.

    It lists the notification names it is interested in and receives exactly those in
    handleNotification, on the sending thread (a core used from several threads calls it from
    several threads). The core owns a registered mediator by reference count: View::
    registerMediator takes the pointer, and a delivery that has begun keeps the mediator alive
    until it ends, even when another thread removes it meanwhile. onRegister and onRemove run on
    the registering / removing thread, outside the core's locks. The view component is not
    owned.
*/
class Mediator : public juce::ReferenceCountedObject, public Notifier
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Mediator>;

    explicit Mediator(int mediatorName, void* viewComponent = nullptr)
        : m_mediatorName(mediatorName), m_viewComponent(viewComponent)
    {
    }

    int getMediatorName() const { return m_mediatorName; }

    void setViewComponent(void* viewComponent) { m_viewComponent.store(viewComponent); }
    void* getViewComponent() const { return m_viewComponent.load(); }
    template <class T>
    T* getViewComponentAs() const
    {
        return static_cast<T*>(getViewComponent());
    }

    /** The names this mediator is notified of; read once, when it is registered. */
    virtual juce::Array<int> listNotificationInterests() const { return {}; }
    /** One notification of a listed name. */
    virtual void handleNotification(const Notification::Ptr& notification) { juce::ignoreUnused(notification); }

    /** Called once the View holds the mediator and its interests. */
    virtual void onRegister() {}
    /** Called once the View has let the mediator go (removeMediator, removeCore). */
    virtual void onRemove() {}

private:
    const int m_mediatorName;
    std::atomic<void*> m_viewComponent;
};

} // namespace PureMVC
