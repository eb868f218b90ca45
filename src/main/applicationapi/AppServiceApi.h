#pragma once

#include "main/applicationapi/AppServiceCallBack.h"
#include "main/applicationapi/GeneralResponse.h"
#include "main/applicationapi/GeneralService.h"
#include "main/applicationapi/MainServiceManager.h"

#include <map>

class AppCmdCallBack;
class ViewCallBack;

/** The base of every application API: owns the process's MainServiceManager (target AppMain),
    registers itself in a process-wide map by application type, and offers the requests every
    application sends to the main service. Each request is posted at once when connected and
    buffered until the connection otherwise.

    A derived API implements remoteCallBack (every incoming message of the process), handles
    its own codes there and passes the rest to its GeneralService; it installs its
    GeneralResponse with setGeneralResponse and deletes it itself.

    Message thread only; the instance map is not locked, so APIs are made and destroyed on one
    thread.
*/
class AppServiceApi : private AppServiceCallBack
{
public:
    /** Builds the manager (see MainServiceManager) and registers this object under appType,
        unless an instance is registered there already: the first one stays. */
    AppServiceApi(Pubhead::eAppType::EnumTypeTag appType, bool initSession);
    /** A copy with its own manager (a copy of the other's) and general service; registered as
        the constructor does. */
    AppServiceApi(const AppServiceApi& other);
    AppServiceApi& operator=(const AppServiceApi&) = delete;
    /** Erases the map entry of this object's application type, whatever instance it holds. */
    ~AppServiceApi() override;

    /** Null when none is registered; otherwise the one with the smallest application type. */
    static AppServiceApi* getInstance();
    /** The instance registered under appType, or null. */
    static AppServiceApi* getInstance(Pubhead::eAppType::EnumTypeTag appType);

    void initMsgSession() { m_mainServiceManager.initMsgSession(); }
    /** Binds the view callback of the response object; without one, nothing happens. */
    void bindViewCallBack(ViewCallBack* callBack);
    void unbindViewCallBack();
    void bindAppCmdCallBack(AppCmdCallBack* callBack) { m_mainServiceManager.bindAppCmdCallBack(callBack); }
    Pubhead::eAppType::EnumTypeTag getAppType() const { return m_mainServiceManager.getAppType(); }
    void* getNativeHandle() const { return m_mainServiceManager.getNativeHandle(); }
    void procCommandInfo(const juce::ReferenceCountedObjectPtr<Bundle>& info)
    {
        m_mainServiceManager.procCommandInfo(info);
    }
    void postMessage(int code, int param1, int param2, const juce::ReferenceCountedObjectPtr<Parcelable>& object)
    {
        m_mainServiceManager.postMessage(code, param1, param2, object);
    }

    /** 1724: asks the main service to show the page. */
    void requestPageShow(Pubhead::eAppServiceType::EnumTypeTag service);
    /** 1728: the page is shown. */
    void onPageShowReady(Pubhead::eAppServiceType::EnumTypeTag service);
    /** 1729: hiding the page is done. */
    void onPageHidingReady(Pubhead::eAppServiceType::EnumTypeTag service);
    /** 1204 with the service type (the manager's replyPowerOffReady sends the application
        type instead, unbuffered). */
    void powerOffReady(Pubhead::eAppServiceType::EnumTypeTag service);
    /** 1137 with param1 0 (the manager's systemBeep sends the application type, unbuffered). */
    void systemBeep();
    /** 2248 with the two values. */
    void sendGeneralToInfoBar(int param1, int param2);
    /** 1765: the value as RemoteObjFormat::formatInt, param2 1. */
    void setSettingInt(int id, int value);
    /** 1765: the value as RemoteObjFormat::formatString, param2 2. */
    void setSettingString(int id, const juce::String& value);

protected:
    /** Installs the derived API's response object (not owned) in this object and in the
        general service; null removes it. */
    void setGeneralResponse(GeneralResponse* response);
    GeneralResponse* getGeneralResponse() const { return m_pGeneralResponse; }
    GeneralService* getGeneralService() { return &m_generalService; }
    MainServiceManager* getMainServiceManager() { return &m_mainServiceManager; }

    MainServiceManager m_mainServiceManager;
    GeneralService m_generalService;
    GeneralResponse* m_pGeneralResponse = nullptr;

private:
    void registerInstance();

    static std::map<int, AppServiceApi*> m_pInstanceMap;
};
