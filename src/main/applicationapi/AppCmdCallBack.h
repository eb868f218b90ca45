#pragma once

#include "Message/Bundle.h"
#include "Pubhead.h"

/** The application's command handler: the application commands of the main service (enter or
    leave a source, show or hide a page), as AppCmdHelper::processCmd decodes them. The extra
    data may be null. Called on the message thread; bound by raw pointer and never owned. */
class AppCmdCallBack
{
public:
    virtual ~AppCmdCallBack() = default;

    virtual void onSourceEnter(Pubhead::eAppServiceType::EnumTypeTag service, bool parking, bool frontShow,
                               const Bundle::Ptr& extraData) = 0;
    virtual void onSourceExit(Pubhead::eAppServiceType::EnumTypeTag service,
                              Pubhead::eAppServiceType::EnumTypeTag nextService, const Bundle::Ptr& extraData) = 0;
    virtual void onPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool parking,
                            const Bundle::Ptr& extraData) = 0;
    /** After it returns, the page hide is reported to the main service (1730). */
    virtual void onPageHide(Pubhead::eAppServiceType::EnumTypeTag service,
                            Pubhead::eAppServiceType::EnumTypeTag nextService, const Bundle::Ptr& extraData) = 0;
};
