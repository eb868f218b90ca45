#pragma once

#include "PureMVC/ICommand.h"

#include <vector>

namespace PureMVC
{

/** A command made of sub-commands, run in the order they were added.

    Override initializeMacroCommand and call addSubCommand there. execute makes each
    sub-command fresh, gives it the core's key, executes it with the same notification and
    deletes it before the next one. Thread and lifetime: see ICommand.
*/
class MacroCommand : public ICommand
{
public:
    /** Runs initializeMacroCommand (the first time only), then the sub-commands in order. */
    void execute(const Notification::Ptr& notification) final;

protected:
    /** Adds the sub-commands; called once, by the first execute. */
    virtual void initializeMacroCommand() {}

    /** A null factory is ignored. */
    void addSubCommand(ICommand::Factory factory);
    template <class CommandType>
    void addSubCommand()
    {
        addSubCommand(ICommand::factoryOf<CommandType>());
    }

private:
    std::vector<ICommand::Factory> m_subCommands;
    bool m_initialized = false;
};

} // namespace PureMVC
