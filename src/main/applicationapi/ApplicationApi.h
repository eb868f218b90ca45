#pragma once

#include "main/applicationapi/AppServiceApi.h"

#include <memory>

/** The part that every application API with a callback of its own shares: the bound callback
    (CallBack, not owned, null until bindCallBack) and the response object that the API made
    and installed with adoptResponse (owned).

    Copies are whole APIs: a copy has its own connection (see AppServiceApi) and makes its own
    response object, which starts with the original's view callback; the callbacks are the
    same. Assignment takes over the other's callbacks and view callback and keeps this object's
    connection. Message thread only, as AppServiceApi.
*/
template <class CallBack>
class ApplicationApi : public AppServiceApi
{
public:
    /** Replaces the bound callback; null unbinds. Not owned. */
    void bindCallBack(CallBack* callBack) { m_pCallBack = callBack; }

protected:
    ApplicationApi(Pubhead::eAppType::EnumTypeTag appType, bool initSession) : AppServiceApi(appType, initSession) {}
    /** The derived copy makes its own response with adoptResponse. */
    ApplicationApi(const ApplicationApi& other) : AppServiceApi(other), m_pCallBack(other.m_pCallBack) {}
    ApplicationApi& operator=(const ApplicationApi& other)
    {
        m_pCallBack = other.m_pCallBack;
        bindViewCallBack(other.m_pResponse != nullptr ? other.m_pResponse->getViewCallBack() : nullptr);
        return *this;
    }
    ~ApplicationApi() override { setGeneralResponse(nullptr); }

    /** Installs the derived API's response object and owns it. In a copy, the response
        installed so far is the original's: its view callback moves over to the new one. */
    void adoptResponse(std::unique_ptr<GeneralResponse> response)
    {
        ViewCallBack* view = getGeneralResponse() != nullptr ? getGeneralResponse()->getViewCallBack() : nullptr;
        m_pResponse = std::move(response);
        setGeneralResponse(m_pResponse.get());
        m_pResponse->bindViewCallBack(view);
    }

    /** adoptResponse with a new Response(the general service, the callback member). */
    template <class Response>
    void adoptResponse()
    {
        adoptResponse(std::make_unique<Response>(getGeneralService(), &m_pCallBack));
    }

    CallBack* m_pCallBack = nullptr;

private:
    std::unique_ptr<GeneralResponse> m_pResponse;
};
