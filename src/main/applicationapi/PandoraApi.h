#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/InfoMedia.h"
#include "main/applicationapi/PandoraCallBack.h"

/** The API of the Pandora player (AppPandora): a singleton.

    Incoming: the codes 1209, 1579, 1636, 1639, 2526 and 48654 go to
    PandoraCallBack::onPandoraMessage (the message as it came, its code); the common
    notifications 1195, 1203, 1322 and 1199 to the PandoraCallBack operations of the same names
    (power-off is then answered with 1204, and quit hands over to the JUCE application);
    everything else to the common dispatch. Message thread only.
*/
class PandoraApi : public ApplicationApi<PandoraCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static PandoraApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    PandoraApi(const PandoraApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    PandoraApi& operator=(const PandoraApi& other) = default;
    ~PandoraApi() override = default;

    /** Code 1184, param1 3 (media), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoMedia::Ptr& info);

private:
    PandoraApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
