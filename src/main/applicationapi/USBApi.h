#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/InfoMedia.h"
#include "main/applicationapi/USBCallBack.h"

/** The API of the USB player (AppUSB): a singleton.

    Incoming: the codes 1178, 1634, 1636 and 1639 go to USBCallBack::onUSBMessage (the message
    as it came, its code); the common notifications 1195, 1203, 1322 and 1199 to the USBCallBack
    operations of the same names (power-off is then answered with 1204, and quit hands over to
    the JUCE application); everything else to the common dispatch. Message thread only.
*/
class USBApi : public ApplicationApi<USBCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static USBApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    USBApi(const USBApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    USBApi& operator=(const USBApi& other) = default;
    ~USBApi() override = default;

    /** Code 1184, param1 3 (media), the record's Bundle; nothing for a null record. First sets
        the record's source to 10 when sourceFlag is true and to 7 otherwise: the caller's
        record is changed in place. */
    void sendToInfoBar(const InfoMedia::Ptr& info, bool sourceFlag);

private:
    USBApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
