#pragma once

#include "Message/Bundle.h"

#include <set>

/** Receives named broadcasts ("actions") sent by any process of the bus, own included.

    Derive, add the actions wanted, register with IPCMsg::MessageHelper::registerReceiver.
    Broadcasts reach a process through its endpoint, so a receiver hears nothing unless the
    process has an open session with a consumer (MsgSession::init(consumer), which an
    AppServiceApi does) and its message thread runs JUCE's dispatch loop (a
    JUCEApplicationBase, or MessageManager::runDispatchLoop), which delivers them.

    onReceive runs on the message thread. Destroying a receiver unregisters it. A receiver must
    not unregister itself or another one from inside onReceive.
*/
class BroadcastReceiver
{
public:
    BroadcastReceiver() = default;
    /** Copies the actions; the copy is not registered. */
    BroadcastReceiver(const BroadcastReceiver& other);
    BroadcastReceiver& operator=(const BroadcastReceiver& other);
    virtual ~BroadcastReceiver();

    /** A broadcast whose action is in this receiver's set. bundle is the broadcast's data
        (null when it carried none). */
    virtual void onReceive(const juce::String& action, const juce::ReferenceCountedObjectPtr<Bundle>& bundle) = 0;

    void addAction(const juce::String& action);
    void removeAction(const juce::String& action);
    /** Exact, case-sensitive match. (The name is the interface's own.) */
    bool isContaintAction(const juce::String& action) const;

private:
    std::set<juce::String> m_actions;
};
