#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/SetupCallBack.h"

class AppCmdCallBack;
class ViewCallBack;

/** The API of the setup application (AppSetup).

    Commands go to the main service as code 1126. Incoming code 1190 is this API's own: with
    arg1 2 and a Bundle it is a changed setting (arg2 its id), decoded as text or number as the
    settings store says the setting holds (SettingHelper::isSettingValueString) and handed to
    onSettingString or onSettingInt; then every 1190, decoded or not, goes to onSetupMessage as
    it came. Every other code goes to the common dispatch: 1195 and 1322 reach the callback's
    onGeneralNotify and onGeneralCommand. Message thread only.
*/
class SetupApi : public ApplicationApi<SetupCallBack>
{
public:
    /** Sub-commands of code 1126 (param1). */
    enum Command
    {
        kLoadFactory = 0,
        kSuperFactory = 1
    };
    /** arg1 of incoming code 1190 for a changed setting. */
    static constexpr int kSettingChanged = 2;

    /** Binds the command and view callbacks (not owned); no SetupCallBack yet. */
    SetupApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    SetupApi(const SetupApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    SetupApi& operator=(const SetupApi& other) = default;
    ~SetupApi() override = default;

    void loadFactory();
    void superFactory();

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;

    class GeneralResponseEx;
};
