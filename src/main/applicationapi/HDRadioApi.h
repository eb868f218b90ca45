#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/HDRadioCallBack.h"
#include "main/applicationapi/InfoTuner.h"

/** The API of the HD Radio application (AppHDRadio): a singleton.

    Incoming: code 1032 goes to HDRadioCallBack::onHDRadioEvent (param1, its code); the common
    notifications 1195, 1203, 1322 and 1199 to the HDRadioCallBack operations of the same names
    (power-off is then answered with 1204, and quit hands over to the JUCE application);
    everything else to the common dispatch. Message thread only.
*/
class HDRadioApi : public ApplicationApi<HDRadioCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static HDRadioApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    HDRadioApi(const HDRadioApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    HDRadioApi& operator=(const HDRadioApi& other) = default;
    ~HDRadioApi() override = default;

    /** Code 1184, param1 1 (tuner), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoTuner::Ptr& info);

private:
    HDRadioApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
