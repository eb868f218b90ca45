#pragma once

#include "Message/Bundle.h"
#include "Pubhead.h"

/** An application command from the main service: enter or leave a source, show or hide a page.
    It travels as a Bundle (RemoteObjFormat::formatCommandLine) or, to a process being started,
    as a text command line that refers to a Bundle in the shared ring (CmdLineHelper). */
class AppCommandLine : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<AppCommandLine>;

    enum Command
    {
        kSourceEnter = 1,
        kSourceExit = 2,
        kPageShow = 3,
        kPageHide = 4
    };

    /** Source enter: detail bit 0 = parking, bit 1 = front show. */
    static Ptr genCmdSourceEnter(Pubhead::eAppServiceType::EnumTypeTag service, bool parking, bool frontShow);
    /** Source exit: detail = the service that follows. */
    static Ptr genCmdSourceExit(Pubhead::eAppServiceType::EnumTypeTag service,
                                Pubhead::eAppServiceType::EnumTypeTag next);
    /** Page show: detail = 1 when parking. */
    static Ptr genCmdPageShow(Pubhead::eAppServiceType::EnumTypeTag service, bool parking);
    /** Page hide: detail = the service that follows. */
    static Ptr genCmdPageHide(Pubhead::eAppServiceType::EnumTypeTag service,
                              Pubhead::eAppServiceType::EnumTypeTag next);
    /** A command with the three fields as they came (from a Bundle, say); no check. */
    static Ptr create(int command, int service, int detail);

    ~AppCommandLine() override = default;

    bool isSourceEnter() const { return m_nCommand == kSourceEnter; }
    bool isSourceExit() const { return m_nCommand == kSourceExit; }
    bool isPageShow() const { return m_nCommand == kPageShow; }
    bool isPageHide() const { return m_nCommand == kPageHide; }
    /** Bit 0 of detail, whatever the command (for an exit or hide, of the next service's number). */
    bool isParking() const { return (m_nDetail & 1) != 0; }
    /** Source enter: bit 1 of detail; page show: always true; otherwise false. */
    bool isFrontShow() const;

    int getCommand() const { return m_nCommand; }
    Pubhead::eAppServiceType::EnumTypeTag getService() const
    {
        return (Pubhead::eAppServiceType::EnumTypeTag)m_nService;
    }
    int getDetail() const { return m_nDetail; }
    /** For a source exit or page hide: the service that follows. */
    Pubhead::eAppServiceType::EnumTypeTag getNextService() const
    {
        return (Pubhead::eAppServiceType::EnumTypeTag)m_nDetail;
    }

    /** Replaces the extra data (shared). */
    void putExtraData(const Bundle::Ptr& extra) { m_pExtraData = extra; }
    const Bundle::Ptr& getExtraData() const { return m_pExtraData; }

private:
    AppCommandLine(int command, int service, int detail);

    int m_nCommand;
    int m_nService;
    int m_nDetail;
    Bundle::Ptr m_pExtraData;
};
