#pragma once

#include "Arguments.h"

#include <LmCom.h>

namespace LmComTool
{

/** "lmcom post", "lmcom send" and "lmcom broadcast": put a message on the bus as the
    application AppUnknown (26), with an optional Bundle built from --int, --bool, --double,
    --string and --bytes options. The tool opens no endpoint of its own. */
class MessageCommand
{
public:
    static const char* const kPostUsage;
    static const char* const kSendUsage;
    static const char* const kBroadcastUsage;
    static const char* const kPostHelp;
    static const char* const kSendHelp;
    static const char* const kBroadcastHelp;
    /** The value options, for every help text of these commands. */
    static const char* const kValueOptionsHelp;
    static std::vector<Arguments::Option> options();

    static int runPost(const Arguments& arguments);
    static int runSend(const Arguments& arguments);
    static int runBroadcast(const Arguments& arguments);

    /** The Bundle the value options describe, in their order; null when there are none. */
    static Bundle::Ptr bundleOf(const Arguments& arguments);

private:
    static int deliver(const Arguments& arguments, bool synchronous);
};

} // namespace LmComTool
