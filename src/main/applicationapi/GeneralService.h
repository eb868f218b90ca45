#pragma once

#include "Message/AppMessage.h"

class GeneralResponse;
class MainServiceManager;

/** The common dispatch of the framework's own message codes: connection (1744, 1746, 1747),
    command lines (1754), the view (1725 to 1727) and the GeneralResponse notifications (1194,
    1195, 1199, 1202, 1203, 1322). Every application API hands it the messages it does not
    handle itself. Message thread. */
class GeneralService
{
public:
    /** manager: the owner's MainServiceManager (not owned). No response until one is set. */
    explicit GeneralService(MainServiceManager* manager) : m_pMainServiceManager(manager) {}
    ~GeneralService() = default;

    /** True when the code is one of the above and was dispatched; false for any other code,
        for a null message, and for every message while no response object is set. */
    bool processMessage(const juce::ReferenceCountedObjectPtr<AppMessage>& message);

    /** Not owned; null clears. */
    void setGeneralResponse(GeneralResponse* response) { m_pGeneralResponse = response; }
    GeneralResponse* getGeneralResponse() const { return m_pGeneralResponse; }
    MainServiceManager* getMainServiceManager() const { return m_pMainServiceManager; }
    void setMainServiceManager(MainServiceManager* manager) { m_pMainServiceManager = manager; }

private:
    MainServiceManager* m_pMainServiceManager;
    GeneralResponse* m_pGeneralResponse = nullptr;
};
