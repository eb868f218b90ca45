#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/DABCallBack.h"

/** The API of the DAB radio (AppDAB), made by the application with its command and view
    callbacks.

    Incoming: code 48684 goes to DABCallBack::onDABMessage (the message as it came, its code);
    the common notification 1322 to onGeneralCommand; everything else to the common dispatch.
    Message thread only.
*/
class DABApi : public ApplicationApi<DABCallBack>
{
public:
    /** Connects at once; cmdCallBack receives the command lines and viewCallBack the view
        messages (either may be null; neither is owned). */
    DABApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    DABApi(const DABApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    DABApi& operator=(const DABApi& other) = default;
    ~DABApi() override = default;

    /** Code 48676 with the two values, each sent as a 32-bit integer (a wider value is cut
        to its low 32 bits). */
    void postMsgToMain(unsigned int param1, long param2);

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
