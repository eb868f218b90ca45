#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/InfoTuner.h"
#include "main/applicationapi/RadioCallBack.h"

/** The API of the radio application (AppRadio): a singleton.

    Incoming: the codes 74, 1175, 1323, 1328 and 1636 go to RadioCallBack::onRadioMessage (the
    message as it came, its code); the common notifications 1195, 1203, 1322 and 1199 to the
    RadioCallBack operations of the same names (power-off is then answered with 1204, and quit
    hands over to the JUCE application); everything else to the common dispatch. Message thread
    only.
*/
class RadioApi : public ApplicationApi<RadioCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static RadioApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    RadioApi(const RadioApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    RadioApi& operator=(const RadioApi& other) = default;
    ~RadioApi() override = default;

    /** Code 1184, param1 1 (tuner), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoTuner::Ptr& info);

private:
    RadioApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
