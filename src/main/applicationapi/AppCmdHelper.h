#pragma once

#include "Message/AppCommandLine.h"

class AppCmdCallBack;

/** Turns an application command into a call on the application's command handler. */
class AppCmdHelper
{
public:
    /** Calls the operation of callBack that matches the command (source enter or exit, page
        show or hide); after a page hide, reports it (1730 with the service) through
        AppServiceApi::getInstance(), when there is one. Nothing for a null command or
        callback, or an unknown command. Message thread. */
    static void processCmd(const juce::ReferenceCountedObjectPtr<AppCommandLine>& command, AppCmdCallBack* callBack);

private:
    AppCmdHelper() = delete;
};
