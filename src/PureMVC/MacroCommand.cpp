#include "PureMVC/MacroCommand.h"

namespace PureMVC
{

void MacroCommand::execute(const Notification::Ptr& notification)
{
    if (!m_initialized)
    {
        m_initialized = true;
        initializeMacroCommand();
    }
    const auto key = getMultitonKey();
    for (const auto& factory : m_subCommands)
    {
        if (auto command = factory())
        {
            command->initializeNotifier(key);
            command->execute(notification);
        }
    }
}

void MacroCommand::addSubCommand(ICommand::Factory factory)
{
    if (factory)
        m_subCommands.push_back(std::move(factory));
}

} // namespace PureMVC
