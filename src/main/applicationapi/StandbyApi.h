#pragma once

#include "main/applicationapi/AppServiceApi.h"

#include <memory>

/** The API of the standby screen (AppStandby), made by the application with its command and
    view callbacks.

    It has no callback of its own: the common notifications keep their default answers
    (power-off answered with 1204, quit handed to the JUCE application) and the view and command
    lines reach the callbacks given to the constructor. It has no message codes of its own:
    whatever the main service sends it goes to the common dispatch, and a code that the common
    dispatch does not know is dropped. Message thread only.
*/
class StandbyApi : public AppServiceApi
{
public:
    /** Connects at once; cmdCallBack receives the command lines and viewCallBack the view
        messages (either may be null; neither is owned). */
    StandbyApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object, and the same view callback. */
    StandbyApi(const StandbyApi& other);
    /** Takes the other's view callback; the connection stays this object's own. */
    StandbyApi& operator=(const StandbyApi& other);
    ~StandbyApi() override;

    /** Code 1142, param1 0: leave standby. */
    void exitStandby();

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    std::unique_ptr<GeneralResponse> m_pResponse;
};
