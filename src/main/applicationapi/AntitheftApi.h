#pragma once

#include "main/applicationapi/AntitheftCallBack.h"
#include "main/applicationapi/ApplicationApi.h"

/** The API of the anti-theft application (AppAntitheft), made by the application with its
    command and view callbacks.

    Incoming: the common notification 1322 goes to AntitheftCallBack::onGeneralCommand;
    everything else to the common dispatch. It has no message codes of its own: whatever the
    main service sends it goes to the common dispatch, and a code that the common dispatch does
    not know is dropped. Message thread only.
*/
class AntitheftApi : public ApplicationApi<AntitheftCallBack>
{
public:
    /** Connects at once; cmdCallBack receives the command lines and viewCallBack the view
        messages (either may be null; neither is owned). */
    AntitheftApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    AntitheftApi(const AntitheftApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    AntitheftApi& operator=(const AntitheftApi& other) = default;
    ~AntitheftApi() override = default;

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
