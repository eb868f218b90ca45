#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/HDMICallBack.h"

/** The API of the HDMI input (AppHDMI): a singleton.

    Incoming: code 2425 goes to HDMICallBack::onHDMISignal and code 1224 to onHDMIState (param1,
    param2); 1224 then also goes on to the common dispatch, a double delivery that is deliberate
    and kept: applications rely on both. The common notification 1322 goes to onGeneralCommand;
    everything else to the common dispatch. Message thread only.
*/
class HDMIApi : public ApplicationApi<HDMICallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static HDMIApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    HDMIApi(const HDMIApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    HDMIApi& operator=(const HDMIApi& other) = default;
    ~HDMIApi() override = default;

private:
    HDMIApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
