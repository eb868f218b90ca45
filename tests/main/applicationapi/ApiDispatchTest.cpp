// ApiDispatch: own codes stop, are swallowed, or go on to the common dispatch; unbound
// callbacks drop their own codes.
#include "support/AppPeer.h"

#include "main/applicationapi/ApiDispatch.h"

using namespace LmComTesting;

namespace
{
using ApiDispatchTest = FrameworkTest;

struct Target
{
    void op(int p1, int p2) { calls.push_back(std::to_string(p1) + " " + std::to_string(p2)); }
    std::vector<std::string> calls;
};

const ApiDispatch::OwnCode<Target> kTable[] = {
    {1322, &ApiDispatch::arguments<Target, &Target::op>},
    {1195, &ApiDispatch::arguments<Target, &Target::op>, ApiDispatch::Then::goCommon},
    {1203, nullptr}};

AppMessage::Ptr message(int code, int p1, int p2)
{
    return AppMessage::Ptr(new AppMessage(code, p1, p2));
}
} // namespace

TEST_F(ApiDispatchTest, OwnCodesStopGoOnOrAreSwallowed)
{
    TestApi api(Pubhead::eAppType::AppRadio, false);
    auto& service = *api.getGeneralService();
    Target target;
    for (Target* bound : {&target, (Target*)nullptr})
        for (int code : {1322, 1195, 1203, 1194})
            ApiDispatch::route(kTable, bound, service, message(code, code - 1000, 1));
    ApiDispatch::route(kTable, &target, service, nullptr);
    // Bound: 1322 and 1195 reach the target; 1195 and the unlisted 1194 also reach the
    // common dispatch; 1203 is swallowed. Unbound: own codes reach nobody but 1195 goes on.
    EXPECT_EQ(target.calls, (std::vector<std::string>{"322 1", "195 1"}));
    EXPECT_EQ(api.response().calls, (std::vector<std::string>{"onGeneralNotify 195 1", "onGeneralEvent 194",
                                                              "onGeneralNotify 195 1", "onGeneralEvent 194"}));
}
