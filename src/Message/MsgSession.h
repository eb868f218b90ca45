#pragma once

/** The transport between the processes of one head unit. */
class MsgSession
{
public:
    using DestNameResolver = const char* (*)(int);

    /** Sets this process's own eAppType and the name resolver; no check, a later call
        replaces both. Belongs on the message thread, before init. */
    static void config(int sender, DestNameResolver getDestName);
    /** The resolver's name for a destination, or "" when no resolver is installed. */
    static const char* getDestName(int eAppType);

    /** This process's own eAppType; -1 until config. */
    static int m_nSender;
    /** The resolver in force; null until config. */
    static DestNameResolver m_fnGetDestName;
};
