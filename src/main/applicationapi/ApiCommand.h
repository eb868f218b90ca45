#pragma once

#include "main/applicationapi/AppServiceApi.h"
#include "main/applicationapi/ServiceCodes.h"

/** The commands that several application APIs send alike. Each is posted to the main service
    through AppServiceApi::postMessage: at once when connected, kept until the connection
    otherwise. */
class ApiCommand
{
public:
    /** Code 1184 with param1 = kind (ServiceCode::kInfoBarTuner ...), param2 0 and the
        record's Bundle; nothing at all for a null record. */
    template <class Record>
    static void sendToInfoBar(AppServiceApi& api, int kind, const juce::ReferenceCountedObjectPtr<Record>& record)
    {
        if (record != nullptr)
            api.postMessage(ServiceCode::kInfoBar, kind, 0, record->enBundle());
    }

    /** The 0 or 1 that a flag travels as. */
    static int flag(bool value) { return value ? 1 : 0; }

private:
    ApiCommand() = delete;
};
