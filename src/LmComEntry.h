#pragma once

/** Tears down this process's messaging for exit: closes its endpoints (MsgSession::purgeAll),
    then empties the RemoteMessage and Parcel pools. Nothing inside the library calls it. */
void ResourceAutoDelete();
