#pragma once

#include "main/applicationapi/ApplicationApi.h"
#include "main/applicationapi/MainMenuCallBack.h"

class AppCmdCallBack;
class ViewCallBack;

/** The API of the main menu application (AppMainMenu).

    Commands go to the main service as code 1125 with a sub-command in param1. Incoming code
    1174 carries a sub-code in arg1 and is decoded for MainMenuCallBack (see the callback's
    operations); a sub-code outside 1 to 9, or a payload that is missing or of another class,
    is dropped silently and goes nowhere else. Every other code goes to the common dispatch:
    1195 and 1322 reach the callback's onGeneralNotify and onGeneralCommand. Message thread
    only.
*/
class MainMenuApi : public ApplicationApi<MainMenuCallBack>
{
public:
    /** Sub-commands of code 1125 (param1). */
    enum Command
    {
        kLaunchAndroidApp = 4,
        kLaunchCarApp = 5,
        kGetAppState = 6,
        kEnterStandby = 8,
        kSetTemporaryDimmer = 10,
        kFouceCarApp = 11
    };
    /** Sub-codes of incoming code 1174 (arg1). */
    enum SubCode
    {
        kSource = 1,
        kSourceStates = 2,
        kSourceFlag = 3,
        kMenuValue = 4,
        kMenuEvent = 5,
        kUnused = 6,
        kInfoSource = 7,
        kFrontSource = 8,
        kAppList = 9
    };

    /** Binds all three callbacks (none owned). */
    MainMenuApi(AppCmdCallBack* cmdCallBack, ViewCallBack* viewCallBack, MainMenuCallBack* callBack);
    /** A copy with its own connection and response object; the callbacks are the same. */
    MainMenuApi(const MainMenuApi& other);
    /** Takes the other's callbacks; the connection stays this object's own. */
    MainMenuApi& operator=(const MainMenuApi& other) = default;
    ~MainMenuApi() override = default;

    void launchAndroidApp(Pubhead::eAppServiceType::EnumTypeTag service);
    void launchCarApp(Pubhead::eAppServiceType::EnumTypeTag service);
    void getAppState();
    void enterStandby();
    void setTemporaryDimmer();
    /** Brings a car application forward. (The name is the interface's own.) */
    void FouceCarApp(Pubhead::eAppServiceType::EnumTypeTag service);

private:
    void remoteCallBack(const AppMessage::Ptr& message) override;
    void command(int subCommand, int value);

    class GeneralResponseEx;
};
