#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/EQCallBack.h"

/** The API of the equalizer (AppEQ), made by the application with its command and view
    callbacks.

    Incoming: the common notification 1322 goes to EQCallBack::onGeneralCommand; everything else
    to the common dispatch. It has no message codes of its own: whatever the main service sends
    it goes to the common dispatch, and a code that the common dispatch does not know is
    dropped. Message thread only.
*/
class EQApi : public ApplicationApi<EQCallBack>
{
public:
    /** Connects at once; cmdCallBack receives the command lines and viewCallBack the view
        messages (either may be null; neither is owned). */
    EQApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    EQApi(const EQApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    EQApi& operator=(const EQApi& other) = default;
    ~EQApi() override = default;

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
