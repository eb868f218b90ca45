#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/BluetoothCallBack.h"
#include "main/applicationapi/BluetoothIpodInfoCallBack.h"
#include "main/applicationapi/BluetoothPGNCallBack.h"
#include "main/applicationapi/InfoBT.h"
#include "main/applicationapi/InfoMedia.h"

/** The API of the Bluetooth application (AppBluetooth): a singleton that clients cannot
    delete (its destructor is private).

    Incoming, with three callbacks of their own:
    - 1974 to BluetoothCallBack::onBluetoothMessage (the message, its code); 1951, 1952,
      1177, 1953 and 74 to its onLinkEvent, onPhoneEvent, onBluetoothCommand, onMusicEvent
      and onCarDataEvent (param1, param2);
    - 1636 to BluetoothPGNCallBack::onPGNData (param1, param2, the attached Bundle). Without
      a PGN callback it is dropped, whatever else is bound; a message with no Bundle attached
      is dropped with a log line;
    - 1528 to BluetoothIpodInfoCallBack::onIpodInfo with three integers. They are taken from
      the attached object, which must be an int array of RemoteObjFormat (formatIntArray)
      holding at least three integers; otherwise the message is dropped with a log line.
      param1 is never read as an address: a number from another process points nowhere in
      this one. Without an iPod-info callback it is dropped;
    - the common notifications 1195, 1203 (then answered with 1204), 1322 and 1194 to the
      BluetoothCallBack operations of the same names; everything else to the common dispatch.
    Message thread only.
*/
class BluetoothApi : public ApplicationApi<BluetoothCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static BluetoothApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    BluetoothApi(const BluetoothApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    BluetoothApi& operator=(const BluetoothApi& other) = default;

    /** Each replaces the callback it binds; null unbinds. Not owned. */
    void bindPGNCallBack(BluetoothPGNCallBack* callBack) { m_pPGNCallBack = callBack; }
    void bindIpodInfoCallBack(BluetoothIpodInfoCallBack* callBack) { m_pIpodInfoCallBack = callBack; }

    /** Code 1141, param1 15. */
    void startA2DPSrc();
    /** Code 1184, param1 4 (Bluetooth phone), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoBT::Ptr& info);
    /** Code 1184, param1 3 (media), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoMedia::Ptr& info);

private:
    BluetoothApi();
    ~BluetoothApi() override = default; // private: the one instance is never deleted by its clients
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
    BluetoothPGNCallBack* m_pPGNCallBack = nullptr;
    BluetoothIpodInfoCallBack* m_pIpodInfoCallBack = nullptr;
};
