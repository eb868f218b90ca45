#include "PureMVC/View.h"

#include "PureMVC/detail/Multiton.h"

#include <algorithm>

namespace PureMVC
{

namespace
{
detail::Multiton<View>& instances()
{
    static detail::Multiton<View> views;
    return views;
}

void stopAndErase(std::vector<Observer::Ptr>& observers, const void* notifyContext)
{
    auto stopped = std::remove_if(observers.begin(), observers.end(),
                                  [notifyContext](const Observer::Ptr& observer)
                                  {
                                      if (!observer->compareNotifyContext(notifyContext))
                                          return false;
                                      observer->deactivate();
                                      return true;
                                  });
    observers.erase(stopped, observers.end());
}
} // namespace

View::Ptr View::getInstance(const juce::String& key, const Create& create)
{
    return instances().get(key, create, [](View& view) { view.initializeView(); });
}

View::Ptr View::findInstance(const juce::String& key)
{
    return instances().find(key);
}

void View::removeView(const juce::String& key)
{
    if (auto view = instances().take(key))
        view->removeAll();
}

void View::registerObserver(int notificationName, Observer::Ptr observer)
{
    if (observer == nullptr)
        return;
    const Mutex::ScopedLock lock(m_lock);
    m_observerMap[notificationName].push_back(std::move(observer));
}

void View::removeObserver(int notificationName, const void* notifyContext)
{
    const Mutex::ScopedLock lock(m_lock);
    auto found = m_observerMap.find(notificationName);
    if (found == m_observerMap.end())
        return;
    stopAndErase(found->second, notifyContext);
    if (found->second.empty())
        m_observerMap.erase(found);
}

void View::notifyObservers(const Notification::Ptr& notification)
{
    if (notification == nullptr)
        return;
    std::vector<Observer::Ptr> snapshot;
    {
        const Mutex::ScopedLock lock(m_lock);
        auto found = m_observerMap.find(notification->getName());
        if (found == m_observerMap.end())
            return;
        snapshot = found->second;
    }
    // The snapshot's references keep each observer (and the mediator it holds) alive until the
    // delivery ends, whatever other threads remove meanwhile.
    for (const auto& observer : snapshot)
        observer->notifyObserver(notification);
}

bool View::registerMediator(Mediator* mediator)
{
    const Mediator::Ptr added(mediator);
    if (added == nullptr)
        return false;
    // Read before taking the lock: it is the mediator's own code.
    const auto interests = added->listNotificationInterests();
    {
        const Mutex::ScopedLock lock(m_lock);
        if (!m_mediatorMap.emplace(added->getMediatorName(), added).second)
            return false;
        added->initializeNotifier(m_multitonKey);
        Mediator* const context = added.get();
        for (int name : interests)
        {
            m_observerMap[name].push_back(new Observer([held = added](const Notification::Ptr& notification)
                                                       { held->handleNotification(notification); },
                                                       context));
        }
    }
    added->onRegister();
    return true;
}

Mediator::Ptr View::retrieveMediator(int mediatorName) const
{
    const Mutex::ScopedLock lock(m_lock);
    auto found = m_mediatorMap.find(mediatorName);
    return found != m_mediatorMap.end() ? found->second : nullptr;
}

bool View::hasMediator(int mediatorName) const
{
    return retrieveMediator(mediatorName) != nullptr;
}

Mediator::Ptr View::removeMediator(int mediatorName)
{
    Mediator::Ptr removed;
    {
        const Mutex::ScopedLock lock(m_lock);
        auto found = m_mediatorMap.find(mediatorName);
        if (found == m_mediatorMap.end())
            return nullptr;
        removed = found->second;
        m_mediatorMap.erase(found);
        removeObserversOf(removed.get());
    }
    removed->onRemove();
    return removed;
}

void View::removeObserversOf(const void* notifyContext)
{
    for (auto entry = m_observerMap.begin(); entry != m_observerMap.end();)
    {
        stopAndErase(entry->second, notifyContext);
        entry = entry->second.empty() ? m_observerMap.erase(entry) : std::next(entry);
    }
}

void View::removeAll()
{
    std::map<int, std::vector<Observer::Ptr>> observers;
    std::map<int, Mediator::Ptr> mediators;
    {
        const Mutex::ScopedLock lock(m_lock);
        observers.swap(m_observerMap);
        mediators.swap(m_mediatorMap);
    }
    for (auto& entry : observers)
        for (auto& observer : entry.second)
            observer->deactivate();
    for (auto& entry : mediators)
        entry.second->onRemove();
}

} // namespace PureMVC
