include(CMakePackageConfigHelpers)

install(TARGETS LmCom LmComJuce LmComJuceHeaders EXPORT LmComTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/LmCom)
install(DIRECTORY src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/LmCom
    FILES_MATCHING PATTERN "*.h"
    PATTERN "detail" EXCLUDE)
install(EXPORT LmComTargets NAMESPACE LmCom:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/LmCom)

find_package(Fontconfig QUIET)
set(LMCOM_HAVE_FONTCONFIG ${Fontconfig_FOUND})
configure_package_config_file(cmake/LmComConfig.cmake.in
    "${CMAKE_CURRENT_BINARY_DIR}/LmComConfig.cmake"
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/LmCom)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/LmComConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/LmComConfig.cmake" cmake/LmComSystemLibraries.cmake
    "${CMAKE_CURRENT_BINARY_DIR}/LmComConfigVersion.cmake"
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/LmCom)

# pkg-config files: lmcom (for JUCE applications) and lmcom-juce (with the package's JUCE).
# A static LmCom brings its own dependencies to every link; a shared one links them itself.
if(BUILD_SHARED_LIBS)
    set(LMCOM_PC_REQUIRES_FIELD Requires.private)
else()
    set(LMCOM_PC_REQUIRES_FIELD Requires)
endif()
set(LMCOM_PC_REQUIRES "inih libgpiod")
find_package(Fontconfig QUIET)
if(Fontconfig_FOUND)
    string(APPEND LMCOM_PC_REQUIRES " fontconfig")
endif()
set(LMCOM_PC_JUCE_CFLAGS "-DLINUX=1")
foreach(definition ${LMCOM_JUCE_DEFINITIONS})
    string(APPEND LMCOM_PC_JUCE_CFLAGS " -D${definition}")
endforeach()
# JUCE refuses to link debug and release compile units together: consumers compile as the
# package was built.
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
    set(LMCOM_PC_BUILD_FLAGS "")
else()
    set(LMCOM_PC_BUILD_FLAGS " -DNDEBUG")
endif()
file(RELATIVE_PATH LMCOM_PC_PREFIX "/root/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/root")
string(REGEX REPLACE "/$" "" LMCOM_PC_PREFIX "${LMCOM_PC_PREFIX}")
foreach(pc lmcom lmcom-juce)
    configure_file(cmake/${pc}.pc.in "${CMAKE_CURRENT_BINARY_DIR}/${pc}.pc" @ONLY)
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${pc}.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
