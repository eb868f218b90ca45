# Debian's libinih, which has no CMake package of its own, as the imported target LmCom::inih.
# The project and the installed package's config both use this file, so the exported targets
# name no path of the machine that built them.
if(NOT TARGET LmCom::inih)
    find_path(LMCOM_INIH_INCLUDE_DIR ini.h)
    find_library(LMCOM_INIH_LIBRARY inih)
    if(LMCOM_INIH_INCLUDE_DIR AND LMCOM_INIH_LIBRARY)
        add_library(LmCom::inih UNKNOWN IMPORTED)
        set_target_properties(LmCom::inih PROPERTIES
            IMPORTED_LOCATION "${LMCOM_INIH_LIBRARY}"
            INTERFACE_INCLUDE_DIRECTORIES "${LMCOM_INIH_INCLUDE_DIR}")
    endif()
endif()
