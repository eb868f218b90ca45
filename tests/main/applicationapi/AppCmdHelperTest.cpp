// Application commands: from command line to AppCmdCallBack, and the page-hidden report.
#include "support/AppPeer.h"

using namespace LmComTesting;
using Srv = Pubhead::eAppServiceType;

using AppCmdHelperTest = FrameworkTest;

TEST_F(AppCmdHelperTest, EachCommandReachesItsOperationAndAPageHideIsReported)
{
    RecordingCallBacks cmd;
    // Without an API, a page hide reports nothing.
    AppCmdHelper::processCmd(AppCommandLine::genCmdPageHide(Srv::SrvRadio, Srv::SrvUSB), &cmd);

    TestApi api(Pubhead::eAppType::AppRadio, true);
    acknowledge(api);
    AppCmdHelper::processCmd(AppCommandLine::genCmdSourceEnter(Srv::SrvRadio2, true, false), &cmd);
    AppCmdHelper::processCmd(AppCommandLine::genCmdSourceEnter(Srv::SrvRadio2, false, true), &cmd);
    auto exit = AppCommandLine::genCmdSourceExit(Srv::SrvRadio2, Srv::SrvUSB2);
    auto extra = Bundle::obtain();
    extra->putString("text", "bye");
    exit->putExtraData(extra);
    AppCmdHelper::processCmd(exit, &cmd);
    // Through the Bundle form, as it travels with 1754.
    api.procCommandInfo(RemoteObjFormat::formatCommandLine(AppCommandLine::genCmdPageShow(Srv::SrvRadio3, true)));
    api.bindAppCmdCallBack(&cmd);
    api.procCommandInfo(RemoteObjFormat::formatCommandLine(AppCommandLine::genCmdPageShow(Srv::SrvRadio3, true)));
    AppCmdHelper::processCmd(AppCommandLine::genCmdPageHide(Srv::SrvRadio3, Srv::SrvSetup), &cmd);
    // Unknown commands and missing parts do nothing; a hide without a callback reports nothing.
    AppCmdHelper::processCmd(AppCommandLine::create(5, 1, 1), &cmd);
    AppCmdHelper::processCmd(nullptr, &cmd);
    AppCmdHelper::processCmd(AppCommandLine::genCmdPageHide(Srv::SrvRadio4, Srv::SrvSetup), nullptr);

    EXPECT_EQ(cmd.calls,
              (std::vector<std::string>{"pagehide 0 next=6 extra=-", "sourceenter 2 parking=1 front=0 extra=-",
                                        "sourceenter 2 parking=0 front=1 extra=-", "sourceexit 2 next=7 extra=bye",
                                        "pageshow 52 parking=1 extra=-", "pagehide 52 next=23 extra=-"}));
    EXPECT_EQ(LogLines::count("E|applicationapi/MainServiceManager|151|AppServiceApi|"
                              "Please call AppServiceApi::bindAppCmdCallBack first!"),
              1);
    ASSERT_TRUE(waitFor(ServiceCode::kPageHidden, 1));
    loop->runFor(50);
    ASSERT_EQ(main.requests().size(), 1u);
    EXPECT_EQ(std::make_tuple(main.requests()[0].param1, main.requests()[0].param2), std::make_tuple(52, 0));
    EXPECT_EQ(main.requests()[0].bundle, nullptr);
}
