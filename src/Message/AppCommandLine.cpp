#include "Message/AppCommandLine.h"

AppCommandLine::AppCommandLine(int command, int service, int detail)
    : m_nCommand(command), m_nService(service), m_nDetail(detail)
{
}

AppCommandLine::Ptr AppCommandLine::create(int command, int service, int detail)
{
    return Ptr(new AppCommandLine(command, service, detail));
}

AppCommandLine::Ptr AppCommandLine::genCmdSourceEnter(Pubhead::eAppServiceType::EnumTypeTag service, bool parking,
                                                      bool frontShow)
{
    return create(kSourceEnter, service, (parking ? 1 : 0) | (frontShow ? 2 : 0));
}

AppCommandLine::Ptr AppCommandLine::genCmdSourceExit(Pubhead::eAppServiceType::EnumTypeTag service,
                                                     Pubhead::eAppServiceType::EnumTypeTag next)
{
    return create(kSourceExit, service, next);
}

AppCommandLine::Ptr AppCommandLine::genCmdPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool parking)
{
    return create(kPageShow, service, parking ? 1 : 0);
}

AppCommandLine::Ptr AppCommandLine::genCmdPageHide(Pubhead::eAppServiceType::EnumTypeTag service,
                                                   Pubhead::eAppServiceType::EnumTypeTag next)
{
    return create(kPageHide, service, next);
}

bool AppCommandLine::isFrontShow() const
{
    if (isSourceEnter())
        return (m_nDetail & 2) != 0;
    return isPageShow();
}
