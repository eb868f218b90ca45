#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/WifiCallBack.h"

/** The API of the Wi-Fi application (AppWifi): a singleton.

    Incoming: the common notifications 1195, 1322 and 1202 go to the WifiCallBack operations of
    the same names; everything else to the common dispatch. It has no message codes of its own:
    whatever the main service sends it goes to the common dispatch, and a code that the common
    dispatch does not know is dropped. Message thread only.
*/
class WifiApi : public ApplicationApi<WifiCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static WifiApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    WifiApi(const WifiApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    WifiApi& operator=(const WifiApi& other) = default;
    ~WifiApi() override = default;

private:
    WifiApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
