#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/InfoMedia.h"
#include "main/applicationapi/iPodCallBack.h"

/** The API of the iPod player (AppiPod): a singleton.

    Unlike every other API it does not open its message session when it is made (deliberately:
    the iPod player connects late): nothing arrives and nothing is sent until the application
    calls initMsgSession(); commands issued before that wait in the connection's buffer.

    Incoming: the codes 1176, 1578, 1634, 1636, 1639, 1912, 2525 and 48654 go to
    iPodCallBack::oniPodMessage (the message as it came, its code); the common notifications
    1195, 1203, 1202 and 1322 to the iPodCallBack operations of the same names (power-off is
    then answered with 1204); everything else to the common dispatch. Message thread only.
*/
class iPodApi : public ApplicationApi<iPodCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static iPodApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    iPodApi(const iPodApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    iPodApi& operator=(const iPodApi& other) = default;
    ~iPodApi() override = default;

    /** Code 1184, param1 3 (media), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoMedia::Ptr& info);

private:
    iPodApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
