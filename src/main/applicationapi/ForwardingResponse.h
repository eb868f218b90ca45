#pragma once

#include "main/applicationapi/ApiDispatch.h"
#include "main/applicationapi/GeneralResponse.h"

/** Which common notifications a ForwardingResponse hands to the API's callback. */
namespace Forward
{
enum : int
{
    notify = 1,           ///< 1195 to onGeneralNotify
    powerOff = 2,         ///< 1203 to onPowerOff
    stateChanged = 4,     ///< 1202 to onStateChanged
    command = 8,          ///< 1322 to onGeneralCommand
    event = 16,           ///< 1194 to onGeneralEvent
    quit = 32,            ///< 1199 to onQuit
    noPowerOffAnswer = 64 ///< 1203 is not answered with 1204: the application answers itself
};
} // namespace Forward

/** The response object of an application API: the notifications named in kForwarded go to
    the operations of the same names of the API's bound callback (nothing when none is bound),
    and then every notification keeps the default behaviour of GeneralResponse: a power-off
    request is answered with 1204 (unless kForwarded holds Forward::noPowerOffAnswer) and quit
    hands over to the JUCE application. The other defaults do nothing.

    callBack points to the API's callback member, so that later bindings are seen. Called on
    the message thread by GeneralService.
*/
template <class CallBack, int kForwarded>
class ForwardingResponse : public GeneralResponse
{
public:
    ForwardingResponse(GeneralService* service, CallBack* const* callBack)
        : GeneralResponse(service), m_pCallBack(callBack)
    {
    }

    void onGeneralNotify(int p1, int p2) override
    {
        if constexpr ((kForwarded & Forward::notify) != 0)
            ApiDispatch::call(*m_pCallBack, &CallBack::onGeneralNotify, p1, p2);
    }
    void onPowerOff(int p1) override
    {
        if constexpr ((kForwarded & Forward::powerOff) != 0)
            ApiDispatch::call(*m_pCallBack, &CallBack::onPowerOff, p1);
        if constexpr ((kForwarded & Forward::noPowerOffAnswer) == 0)
            GeneralResponse::onPowerOff(p1);
    }
    void onStateChanged(bool state) override
    {
        if constexpr ((kForwarded & Forward::stateChanged) != 0)
            ApiDispatch::call(*m_pCallBack, &CallBack::onStateChanged, state);
    }
    void onGeneralCommand(int p1, int p2) override
    {
        if constexpr ((kForwarded & Forward::command) != 0)
            ApiDispatch::call(*m_pCallBack, &CallBack::onGeneralCommand, p1, p2);
    }
    void onGeneralEvent(int p1) override
    {
        if constexpr ((kForwarded & Forward::event) != 0)
            ApiDispatch::call(*m_pCallBack, &CallBack::onGeneralEvent, p1);
    }
    void onQuit(const AppMessage::Ptr& message) override
    {
        if constexpr ((kForwarded & Forward::quit) != 0)
            ApiDispatch::call(*m_pCallBack, &CallBack::onQuit, message);
        GeneralResponse::onQuit(message);
    }

private:
    CallBack* const* m_pCallBack;
};
