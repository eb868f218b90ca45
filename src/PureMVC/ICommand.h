#pragma once

#include "PureMVC/Notifier.h"

#include <functional>
#include <memory>

namespace PureMVC
{

/** A command: business logic run for one notification. The Controller makes a new command for
    every notification it handles, gives it the core's key, calls execute once on the sender's
    thread and deletes it: a command keeps no state between notifications. */
class ICommand : public Notifier
{
public:
    /** Makes a fresh command. */
    using Factory = std::function<std::unique_ptr<ICommand>()>;

    /** The factory for a command class with a default constructor. */
    template <class CommandType>
    static Factory factoryOf()
    {
        return [] { return std::unique_ptr<ICommand>(new CommandType()); };
    }

    virtual void execute(const Notification::Ptr& notification) = 0;
};

} // namespace PureMVC
