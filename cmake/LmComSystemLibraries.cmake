# Debian's libinih and libgpiod, which have no CMake packages of their own, as the imported
# targets LmCom::inih and LmCom::gpiod. The project and the installed package's config both use
# this file, so the exported targets name no path of the machine that built them.
foreach(lib inih gpiod)
    if(NOT TARGET LmCom::${lib})
        if(lib STREQUAL "inih")
            set(header ini.h)
        else()
            set(header gpiod.h)
        endif()
        find_path(LMCOM_${lib}_INCLUDE_DIR ${header})
        find_library(LMCOM_${lib}_LIBRARY ${lib})
        if(LMCOM_${lib}_INCLUDE_DIR AND LMCOM_${lib}_LIBRARY)
            add_library(LmCom::${lib} UNKNOWN IMPORTED)
            set_target_properties(LmCom::${lib} PROPERTIES
                IMPORTED_LOCATION "${LMCOM_${lib}_LIBRARY}"
                INTERFACE_INCLUDE_DIRECTORIES "${LMCOM_${lib}_INCLUDE_DIR}")
        endif()
    endif()
endforeach()
