#pragma once

#include "PureMVC/ICommand.h"
#include "PureMVC/Mutex.h"

#include <functional>
#include <map>

namespace PureMVC
{

/** The commands of one core, by notification name.

    One Controller per multiton key (getInstance). For each registered name it observes the
    core's View; each notification of that name makes a fresh command from the factory, gives
    it the core's key, executes it on the sending thread and deletes it. Any thread: the map is
    guarded, and the lock is never held while a command runs.
*/
class Controller : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Controller>;
    using Create = std::function<Controller*(const juce::String& key)>;

    /** Use getInstance: the core's Controller is the one in the multiton map. */
    explicit Controller(const juce::String& key) : m_multitonKey(key) {}

    /** The key's Controller; when there is none, one made by create (default: a Controller),
        then initializeController. */
    static Ptr getInstance(const juce::String& key, const Create& create = {});
    /** The key's Controller or null; never makes one. */
    static Ptr findInstance(const juce::String& key);
    /** Drops the key's Controller and all its commands. */
    static void removeController(const juce::String& key);

    /** Runs a fresh command of factory for each notification of that name; replaces the factory
        of a name registered already. A null factory is ignored. */
    void registerCommand(int notificationName, ICommand::Factory factory);
    template <class CommandType>
    void registerCommand(int notificationName)
    {
        registerCommand(notificationName, ICommand::factoryOf<CommandType>());
    }
    bool hasCommand(int notificationName) const;
    void removeCommand(int notificationName);

    /** Makes and executes the command of the notification's name, if there is one. */
    void executeCommand(const Notification::Ptr& notification);

    const juce::String& getMultitonKey() const { return m_multitonKey; }

protected:
    /** Called once, right after the Controller is made by getInstance. */
    virtual void initializeController() {}

private:
    void removeAllCommands();

    const juce::String m_multitonKey;
    Mutex m_lock;
    std::map<int, ICommand::Factory> m_commandMap;
};

} // namespace PureMVC
