#include "LmComEntry.h"

#include "Message/MsgSession.h"
#include "Message/Parcel.h"
#include "Message/RemoteMessage.h"

void ResourceAutoDelete()
{
    MsgSession::purgeAll();
    RemoteMessage::purgeAll();
    Parcel::purgeAll();
}
