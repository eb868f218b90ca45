#pragma once

#include "Pubhead.h"

/** Maps the source numbers of a Navico display to the head unit's service types and back.

    The two mappings are not inverses, on purpose: service types 15 and 16 both give source 5,
    while source 5 gives 15; the display and the applications rely on exactly these tables.
    Any thread.
*/
class NavicoHelper
{
public:
    /** The service type of a display source; SrvStandby2 (34) for an unknown source. */
    static Pubhead::eAppServiceType::EnumTypeTag getSrcFromNavicoType(int navicoType);

    /** The display source of a service type; 24 for one the display does not know.
        ("Scr" is the established spelling, kept.) */
    static int getScrFromWinceType(Pubhead::eAppServiceType::EnumTypeTag serviceType);
};
