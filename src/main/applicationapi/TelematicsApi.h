#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/TelematicsCallBack.h"

/** The API of the telematics unit (AppTelematics): a singleton.

    Incoming: code 1208 with param1 0 and a Bundle holding a byte array under "data" goes to
    TelematicsCallBack::onTelematicsData with those bytes; 1208 with another param1 is dropped,
    and without that Bundle it is dropped with a log line. The common notifications 1195, 1203
    and 1322 go to the TelematicsCallBack operations of the same names (power-off is then
    answered with 1204); everything else to the common dispatch. Message thread only.
*/
class TelematicsApi : public ApplicationApi<TelematicsCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static TelematicsApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    TelematicsApi(const TelematicsApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    TelematicsApi& operator=(const TelematicsApi& other) = default;
    ~TelematicsApi() override = default;

    /** Code 1151, param1 0. */
    void callIn();
    /** Code 1151, param1 1. */
    void hangup();
    /** Code 1151, param1 2. */
    void showNavi();
    /** Code 1151, param1 3, param2 1 when true and 0 otherwise. */
    void recvNewInboxInfoMsg(bool received);
    /** Code 1151, param1 4, param2 1 when true and 0 otherwise. */
    void recvNewInfoMsg(bool received);

private:
    TelematicsApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
