#pragma once

#include "PureMVC/ICommand.h"

namespace PureMVC
{

/** A command with one piece of work: override execute. (Doing nothing by default lets a name
    be reserved with a command that does not exist yet.) Thread and lifetime: see ICommand. */
class SimpleCommand : public ICommand
{
public:
    void execute(const Notification::Ptr& notification) override { juce::ignoreUnused(notification); }
};

} // namespace PureMVC
