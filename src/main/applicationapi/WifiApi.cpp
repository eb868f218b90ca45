#include "main/applicationapi/WifiApi.h"

#include "main/applicationapi/ForwardingResponse.h"

class WifiApi::GeneralResponseEx
    : public ForwardingResponse<WifiCallBack, Forward::notify | Forward::stateChanged | Forward::command>
{
public:
    using ForwardingResponse::ForwardingResponse;
};

WifiApi* WifiApi::getInstance()
{
    static auto* instance = new WifiApi(); // lives as long as the process: never torn down at exit
    return instance;
}

WifiApi::WifiApi() : ApplicationApi(Pubhead::eAppType::AppWifi, true)
{
    adoptResponse<GeneralResponseEx>();
}

WifiApi::WifiApi(const WifiApi& other) : ApplicationApi(other)
{
    adoptResponse<GeneralResponseEx>();
}

void WifiApi::remoteCallBack(const AppMessage::Ptr& message)
{
    getGeneralService()->processMessage(message);
}
