#include "main/applicationapi/AppServiceApi.h"

#include "Message/RemoteObjFormat.h"
#include "main/applicationapi/ServiceCodes.h"

std::map<int, AppServiceApi*> AppServiceApi::m_pInstanceMap;

AppServiceApi::AppServiceApi(Pubhead::eAppType::EnumTypeTag appType, bool initSession)
    : m_mainServiceManager(this, appType, Pubhead::eAppType::AppMain, initSession),
      m_generalService(&m_mainServiceManager)
{
    registerInstance();
}

AppServiceApi::AppServiceApi(const AppServiceApi& other)
    : AppServiceCallBack(other), m_mainServiceManager(other.m_mainServiceManager),
      m_generalService(other.m_generalService), m_pGeneralResponse(other.m_pGeneralResponse)
{
    m_generalService.setMainServiceManager(&m_mainServiceManager);
    registerInstance();
}

AppServiceApi::~AppServiceApi()
{
    // By type, not by instance: a second API of the same type removes the first one's entry.
    m_pInstanceMap.erase(getAppType());
}

void AppServiceApi::registerInstance()
{
    m_pInstanceMap.emplace(getAppType(), this); // never replaces: the first one stays
}

AppServiceApi* AppServiceApi::getInstance()
{
    return m_pInstanceMap.empty() ? nullptr : m_pInstanceMap.begin()->second;
}

AppServiceApi* AppServiceApi::getInstance(Pubhead::eAppType::EnumTypeTag appType)
{
    auto it = m_pInstanceMap.find(appType);
    return it == m_pInstanceMap.end() ? nullptr : it->second;
}

void AppServiceApi::setGeneralResponse(GeneralResponse* response)
{
    m_pGeneralResponse = response;
    m_generalService.setGeneralResponse(response);
}

void AppServiceApi::bindViewCallBack(ViewCallBack* callBack)
{
    if (m_pGeneralResponse != nullptr)
        m_pGeneralResponse->bindViewCallBack(callBack);
}

void AppServiceApi::unbindViewCallBack()
{
    if (m_pGeneralResponse != nullptr)
        m_pGeneralResponse->bindViewCallBack(nullptr);
}

void AppServiceApi::requestPageShow(Pubhead::eAppServiceType::EnumTypeTag service)
{
    postMessage(ServiceCode::kRequestPageShow, service, 0, nullptr);
}

void AppServiceApi::onPageShowReady(Pubhead::eAppServiceType::EnumTypeTag service)
{
    postMessage(ServiceCode::kPageShowReady, service, 0, nullptr);
}

void AppServiceApi::onPageHidingReady(Pubhead::eAppServiceType::EnumTypeTag service)
{
    postMessage(ServiceCode::kPageHidingReady, service, 0, nullptr);
}

void AppServiceApi::powerOffReady(Pubhead::eAppServiceType::EnumTypeTag service)
{
    postMessage(ServiceCode::kPowerOffReady, service, 0, nullptr);
}

void AppServiceApi::systemBeep()
{
    // param1 0 and buffered, unlike MainServiceManager::systemBeep: both forms are in use.
    postMessage(ServiceCode::kSystemBeep, 0, 0, nullptr);
}

void AppServiceApi::sendGeneralToInfoBar(int param1, int param2)
{
    postMessage(ServiceCode::kGeneralToInfoBar, param1, param2, nullptr);
}

void AppServiceApi::setSettingInt(int id, int value)
{
    postMessage(ServiceCode::kSetting, id, ServiceCode::kSettingInt, RemoteObjFormat::formatInt(value));
}

void AppServiceApi::setSettingString(int id, const juce::String& value)
{
    postMessage(ServiceCode::kSetting, id, ServiceCode::kSettingString, RemoteObjFormat::formatString(value));
}
