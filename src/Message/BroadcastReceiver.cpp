#include "Message/BroadcastReceiver.h"

#include "Message/MessageHelper.h"

BroadcastReceiver::BroadcastReceiver(const BroadcastReceiver& other) : m_actions(other.m_actions) {}

BroadcastReceiver& BroadcastReceiver::operator=(const BroadcastReceiver& other)
{
    if (this != &other)
        m_actions = other.m_actions;
    return *this;
}

BroadcastReceiver::~BroadcastReceiver()
{
    // A destroyed receiver can never be called.
    IPCMsg::MessageHelper::unregisterRecevier(*this);
}

void BroadcastReceiver::addAction(const juce::String& action)
{
    m_actions.insert(action);
}

void BroadcastReceiver::removeAction(const juce::String& action)
{
    m_actions.erase(action);
}

bool BroadcastReceiver::isContaintAction(const juce::String& action) const
{
    return m_actions.count(action) != 0;
}
