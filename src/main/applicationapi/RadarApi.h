#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/RadarCallBack.h"

/** The API of the radar application (AppRadar), made by the application with its command and
    view callbacks.

    Incoming: the common notification 1322 goes to RadarCallBack::onGeneralCommand; everything
    else to the common dispatch. It has no message codes of its own: whatever the main service
    sends it goes to the common dispatch, and a code that the common dispatch does not know is
    dropped. Message thread only.
*/
class RadarApi : public ApplicationApi<RadarCallBack>
{
public:
    /** Connects at once; cmdCallBack receives the command lines and viewCallBack the view
        messages (either may be null; neither is owned). */
    RadarApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    RadarApi(const RadarApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    RadarApi& operator=(const RadarApi& other) = default;
    ~RadarApi() override = default;

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
