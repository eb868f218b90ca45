#include "Message/MsgSession.h"

int MsgSession::m_nSender = -1;
MsgSession::DestNameResolver MsgSession::m_fnGetDestName = nullptr;

void MsgSession::config(int sender, DestNameResolver getDestName)
{
    m_nSender = sender;
    m_fnGetDestName = getDestName;
}

const char* MsgSession::getDestName(int eAppType)
{
    if (m_fnGetDestName == nullptr)
        return "";
    const char* name = m_fnGetDestName(eAppType);
    return name != nullptr ? name : "";
}
