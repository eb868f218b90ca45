#pragma once

#include "Message/AppMessage.h"

class GeneralService;
class ViewCallBack;

/** The answers of one application API to the main service's common notifications, and the
    holder of the application's view callback. Each per-application API derives its own and
    overrides what it needs; the defaults answer a power-off request at once and quit the
    JUCE application on request. Called on the message thread by GeneralService. */
class GeneralResponse
{
public:
    /** service: the GeneralService that dispatches to this object (not owned). */
    explicit GeneralResponse(GeneralService* service) : m_pGeneralService(service) {}
    virtual ~GeneralResponse() = default;

    /** Code 1195. Default: nothing. */
    virtual void onGeneralNotify(int param1, int param2);
    /** Code 1203. Default: power-off ready (1204) with the same param1, sent at once when
        connected and buffered otherwise. */
    virtual void onPowerOff(int param1);
    /** Code 1202 (param1 != 0). Default: nothing. */
    virtual void onStateChanged(bool state);
    /** Code 1322. Default: nothing. */
    virtual void onGeneralCommand(int param1, int param2);
    /** Code 1194. Default: nothing. */
    virtual void onGeneralEvent(int param1);
    /** Code 1199. Default: asks the running JUCE application, if there is one, to quit
        (systemRequestedQuit). */
    virtual void onQuit(const juce::ReferenceCountedObjectPtr<AppMessage>& message);

    /** Null unbinds. */
    void bindViewCallBack(ViewCallBack* callBack) { m_pViewCallBack = callBack; }
    ViewCallBack* getViewCallBack() const { return m_pViewCallBack; }
    GeneralService* getGeneralService() const { return m_pGeneralService; }

private:
    ViewCallBack* m_pViewCallBack = nullptr;
    GeneralService* m_pGeneralService;
};
