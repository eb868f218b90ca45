#include "PureMVC/Facade.h"

#include "PureMVC/detail/Multiton.h"

namespace PureMVC
{

namespace
{
detail::Multiton<Facade>& instances()
{
    static detail::Multiton<Facade> facades;
    return facades;
}
} // namespace

Facade::Ptr Facade::getInstance(const juce::String& key, const Create& create)
{
    return instances().get(key, create, [](Facade& facade) { facade.initializeFacade(); });
}

Facade::Ptr Facade::findInstance(const juce::String& key)
{
    return instances().find(key);
}

bool Facade::hasCore(const juce::String& key)
{
    return findInstance(key) != nullptr;
}

void Facade::removeCore(const juce::String& key)
{
    if (instances().take(key) == nullptr)
        return;
    // Mediators first: they are the ones that reach proxies when they go.
    View::removeView(key);
    Controller::removeController(key);
    Model::removeModel(key);
}

void Facade::initializeFacade()
{
    initializeModel();
    initializeController();
    initializeView();
}

void Facade::initializeModel()
{
    if (m_model == nullptr)
        m_model = Model::getInstance(m_multitonKey);
}

void Facade::initializeController()
{
    if (m_controller == nullptr)
        m_controller = Controller::getInstance(m_multitonKey);
}

void Facade::initializeView()
{
    if (m_view == nullptr)
        m_view = View::getInstance(m_multitonKey);
}

void Facade::registerCommand(int notificationName, ICommand::Factory factory)
{
    if (m_controller != nullptr)
        m_controller->registerCommand(notificationName, std::move(factory));
}

bool Facade::hasCommand(int notificationName) const
{
    return m_controller != nullptr && m_controller->hasCommand(notificationName);
}

void Facade::removeCommand(int notificationName)
{
    if (m_controller != nullptr)
        m_controller->removeCommand(notificationName);
}

bool Facade::registerProxy(Proxy* proxy)
{
    if (m_model != nullptr)
        return m_model->registerProxy(proxy);
    const Proxy::Ptr dropped(proxy); // owned from the call on, even when refused
    return false;
}

Proxy::Ptr Facade::retrieveProxy(int proxyName) const
{
    return m_model != nullptr ? m_model->retrieveProxy(proxyName) : nullptr;
}

bool Facade::hasProxy(int proxyName) const
{
    return m_model != nullptr && m_model->hasProxy(proxyName);
}

Proxy::Ptr Facade::removeProxy(int proxyName)
{
    return m_model != nullptr ? m_model->removeProxy(proxyName) : nullptr;
}

bool Facade::registerMediator(Mediator* mediator)
{
    if (m_view != nullptr)
        return m_view->registerMediator(mediator);
    const Mediator::Ptr dropped(mediator); // owned from the call on, even when refused
    return false;
}

Mediator::Ptr Facade::retrieveMediator(int mediatorName) const
{
    return m_view != nullptr ? m_view->retrieveMediator(mediatorName) : nullptr;
}

bool Facade::hasMediator(int mediatorName) const
{
    return m_view != nullptr && m_view->hasMediator(mediatorName);
}

Mediator::Ptr Facade::removeMediator(int mediatorName)
{
    return m_view != nullptr ? m_view->removeMediator(mediatorName) : nullptr;
}

void Facade::sendNotification(int notificationName, Notification::Body body, const juce::String& type)
{
    notifyObservers(new Notification(notificationName, std::move(body), type));
}

void Facade::notifyObservers(const Notification::Ptr& notification)
{
    if (m_view != nullptr)
        m_view->notifyObservers(notification);
}

} // namespace PureMVC
