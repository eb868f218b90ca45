#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/DVBTCallBack.h"

/** The API of the DVB-T receiver (AppDVBT): a singleton.

    Incoming: code 1181 is swallowed without any call, even with a callback bound (deliberate,
    and kept: applications rely on 1181 having no effect here). The common notifications 1195,
    1203 and 1322 go to the DVBTCallBack operations of the same names (power-off is then
    answered with 1204); everything else to the common dispatch. Message thread only.
*/
class DVBTApi : public ApplicationApi<DVBTCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static DVBTApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    DVBTApi(const DVBTApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    DVBTApi& operator=(const DVBTApi& other) = default;
    ~DVBTApi() override = default;

    /** Code 1129, param1 0, param2 1 when connected and 0 otherwise. */
    void sendConnectState(bool connected);
    /** Code 1129, param1 1, param2 length, and a Bundle holding the length bytes at data
        under "data" (with length 0 the Bundle arrives empty: the wire keeps no empty byte
        arrays). Nothing is sent for a negative length or for null data with a positive
        length. */
    void sendCommand(const void* data, int length);

private:
    DVBTApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
