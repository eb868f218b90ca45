#include "PureMVC/Controller.h"

#include "PureMVC/View.h"
#include "PureMVC/detail/Multiton.h"

namespace PureMVC
{

namespace
{
detail::Multiton<Controller>& instances()
{
    static detail::Multiton<Controller> controllers;
    return controllers;
}
} // namespace

Controller::Ptr Controller::getInstance(const juce::String& key, const Create& create)
{
    return instances().get(key, create, [](Controller& controller) { controller.initializeController(); });
}

Controller::Ptr Controller::findInstance(const juce::String& key)
{
    return instances().find(key);
}

void Controller::removeController(const juce::String& key)
{
    if (auto controller = instances().take(key))
        controller->removeAllCommands();
}

void Controller::registerCommand(int notificationName, ICommand::Factory factory)
{
    if (!factory)
        return;
    // Held while the observer is added, so that two threads registering one name add one
    // observer. The View's lock is taken inside this one, never the other way round.
    const Mutex::ScopedLock lock(m_lock);
    auto& slot = m_commandMap[notificationName];
    const bool isNew = !slot;
    slot = std::move(factory);
    if (isNew)
    {
        // The observer holds the Controller: the View, not the Controller, ends that reference.
        View::getInstance(m_multitonKey)
            ->registerObserver(notificationName, new Observer([held = Ptr(this)](const Notification::Ptr& notification)
                                                              { held->executeCommand(notification); },
                                                              this));
    }
}

bool Controller::hasCommand(int notificationName) const
{
    const Mutex::ScopedLock lock(m_lock);
    return m_commandMap.count(notificationName) != 0;
}

void Controller::removeCommand(int notificationName)
{
    const Mutex::ScopedLock lock(m_lock);
    if (m_commandMap.erase(notificationName) == 0)
        return;
    if (auto view = View::findInstance(m_multitonKey))
        view->removeObserver(notificationName, this);
}

void Controller::executeCommand(const Notification::Ptr& notification)
{
    if (notification == nullptr)
        return;
    ICommand::Factory factory;
    {
        const Mutex::ScopedLock lock(m_lock);
        auto found = m_commandMap.find(notification->getName());
        if (found == m_commandMap.end())
            return;
        factory = found->second;
    }
    if (auto command = factory())
    {
        command->initializeNotifier(m_multitonKey);
        command->execute(notification);
    }
}

void Controller::removeAllCommands()
{
    const Mutex::ScopedLock lock(m_lock);
    auto view = View::findInstance(m_multitonKey);
    for (const auto& entry : m_commandMap)
        if (view != nullptr)
            view->removeObserver(entry.first, this);
    m_commandMap.clear();
}

} // namespace PureMVC
