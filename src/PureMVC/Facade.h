#pragma once

#include "PureMVC/Controller.h"
#include "PureMVC/Model.h"
#include "PureMVC/View.h"

#include <functional>

namespace PureMVC
{

/** The single entry point of one core: its Model (proxies), View (mediators and observers) and
    Controller (commands), reached by a multiton key.

    Facade::getInstance(key) gives each key its own core, made and initialized on first use;
    removeCore(key) releases the core with everything registered in it (mediators and proxies
    get onRemove). An application subclasses Facade and overrides initializeController (and the
    others) to register its commands, then reaches it with getInstance<AppFacade>(key).

    Any thread: every operation is guarded; notifications are delivered on the sending thread.
    Do not make initialize* wait for another thread that reaches a core: cores are made under
    a process-wide lock.
*/
class Facade : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Facade>;
    using Create = std::function<Facade*(const juce::String& key)>;

    /** Use getInstance: the core's Facade is the one in the multiton map. */
    explicit Facade(const juce::String& key) : m_multitonKey(key) {}

    /** The key's Facade; when there is none, one made by create (default: a Facade), then
        initializeFacade. */
    static Ptr getInstance(const juce::String& key, const Create& create = {});
    /** The key's core as a FacadeType, made as one when the key has no core yet; null when the
        key's core is another kind of Facade. */
    template <class FacadeType>
    static juce::ReferenceCountedObjectPtr<FacadeType> getInstance(const juce::String& key)
    {
        auto facade = getInstance(key, [](const juce::String& k) -> Facade* { return new FacadeType(k); });
        return dynamic_cast<FacadeType*>(facade.get());
    }
    /** The key's Facade or null; never makes one. */
    static Ptr findInstance(const juce::String& key);
    static bool hasCore(const juce::String& key);
    /** Releases the key's core: its mediators (onRemove), commands and proxies (onRemove).
        Deliveries under way finish; actors still held elsewhere live on, detached. */
    static void removeCore(const juce::String& key);

    void registerCommand(int notificationName, ICommand::Factory factory);
    template <class CommandType>
    void registerCommand(int notificationName)
    {
        registerCommand(notificationName, ICommand::factoryOf<CommandType>());
    }
    bool hasCommand(int notificationName) const;
    void removeCommand(int notificationName);

    /** See Model::registerProxy: the core owns the proxy from now on. */
    bool registerProxy(Proxy* proxy);
    Proxy::Ptr retrieveProxy(int proxyName) const;
    template <class T>
    juce::ReferenceCountedObjectPtr<T> retrieveProxy(int proxyName) const
    {
        auto proxy = retrieveProxy(proxyName);
        return dynamic_cast<T*>(proxy.get());
    }
    bool hasProxy(int proxyName) const;
    Proxy::Ptr removeProxy(int proxyName);

    /** See View::registerMediator: the core owns the mediator from now on. */
    bool registerMediator(Mediator* mediator);
    Mediator::Ptr retrieveMediator(int mediatorName) const;
    template <class T>
    juce::ReferenceCountedObjectPtr<T> retrieveMediator(int mediatorName) const
    {
        auto mediator = retrieveMediator(mediatorName);
        return dynamic_cast<T*>(mediator.get());
    }
    bool hasMediator(int mediatorName) const;
    Mediator::Ptr removeMediator(int mediatorName);

    /** Builds a Notification and notifies its observers on this thread. */
    virtual void sendNotification(int notificationName, Notification::Body body = nullptr,
                                  const juce::String& type = {});
    void notifyObservers(const Notification::Ptr& notification);

    const juce::String& getMultitonKey() const { return m_multitonKey; }

protected:
    /** Called once by getInstance: initializeModel, initializeController, initializeView. */
    virtual void initializeFacade();
    /** Each takes the key's Model / Controller / View (override to make your own kind). */
    virtual void initializeModel();
    virtual void initializeController();
    virtual void initializeView();

    // Set by the initializers before the Facade is handed out, never changed afterwards.
    Model::Ptr m_model;
    Controller::Ptr m_controller;
    View::Ptr m_view;

private:
    const juce::String m_multitonKey;
};

} // namespace PureMVC
