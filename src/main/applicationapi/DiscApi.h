#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/DiscCallBack.h"
#include "main/applicationapi/DiscSetupDataCallBack.h"
#include "main/applicationapi/InfoMedia.h"

/** The API of the disc player (AppDisc): a singleton, with a second callback for the player's
    setup data.

    Incoming, decoded for the application (another payload than the one named is dropped with a
    log line, never handed on as null):
    - 1179 to DiscCallBack::onDiscMessage, the message as it came and its code;
    - 1634 to onDiscState (param1, param2);
    - 1636 to onDiscData (param1, the bytes under "data" of the attached Bundle);
    - 1639 to onDiscInfo, the attached Bundle decoded as an InfoMedia record;
    - 1640 to onDiscText (param1, the text of a RemoteObjFormat string);
    - 1185 to DiscSetupDataCallBack: a RemoteObjFormat number to onSetupValue, text to
      onSetupText, bytes to onSetupData, each with param1 as the setting's id;
    - the common notifications 1195, 1203 and 1322 to the DiscCallBack operations of the same
      names, and 1194 to DiscSetupDataCallBack::onGeneralEvent; everything else to the common
      dispatch.
    A power-off request (1203) is not answered here, unlike in the other APIs (deliberate: the
    player answers with powerOffReady once the disc is at rest). Message thread only.
*/
class DiscApi : public ApplicationApi<DiscCallBack>
{
public:
    /** The one instance, made (and connected) on the first call; it lives as long as the
        process. Call it first on the message thread. */
    static DiscApi* getInstance();

    /** A copy with its own connection and response object; the callbacks are the same. */
    DiscApi(const DiscApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    DiscApi& operator=(const DiscApi& other) = default;
    ~DiscApi() override = default;

    /** Replaces the callback it binds; null unbinds. Not owned. */
    void bindSetupDataCallBack(DiscSetupDataCallBack* callBack) { m_pSetupDataCallBack = callBack; }

    /** Code 1184, param1 3 (media), the record's Bundle; nothing for a null record. */
    void sendToInfoBar(const InfoMedia::Ptr& info);

private:
    DiscApi();
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
    DiscSetupDataCallBack* m_pSetupDataCallBack = nullptr;
};
