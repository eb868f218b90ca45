#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/InfoSatRadio.h"
#include "main/applicationapi/SiriusCallBack.h"

/** The API of the satellite radio (AppSirius): a singleton.

    Incoming: the codes 1180 and 1636 go to SiriusCallBack::onSiriusMessage (the message as it
    came, its code); the common notifications 1195, 1203, 1322 and 1194 to the SiriusCallBack
    operations of the same names (power-off is then answered with 1204); everything else to the
    common dispatch. Message thread only.
*/
class SiriusApi : public ApplicationApi<SiriusCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static SiriusApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    SiriusApi(const SiriusApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    SiriusApi& operator=(const SiriusApi& other) = default;
    ~SiriusApi() override = default;

    /** Code 1184, param1 2 (satellite radio), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoSatRadio::Ptr& info);

private:
    SiriusApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
