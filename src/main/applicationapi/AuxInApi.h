#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/AuxInCallBack.h"

/** The API of the auxiliary input (AppAuxIn), made by the application with its command and view
    callbacks.

    Incoming: the common notifications 1202, 1322 and 1195 go to the AuxInCallBack operations of
    the same names; everything else to the common dispatch. It has no message codes of its own:
    whatever the main service sends it goes to the common dispatch, and a code that the common
    dispatch does not know is dropped. Message thread only.
*/
class AuxInApi : public ApplicationApi<AuxInCallBack>
{
public:
    /** Connects at once; cmdCallBack receives the command lines and viewCallBack the view
        messages (either may be null; neither is owned). */
    AuxInApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    AuxInApi(const AuxInApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    AuxInApi& operator=(const AuxInApi& other) = default;
    ~AuxInApi() override = default;

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
