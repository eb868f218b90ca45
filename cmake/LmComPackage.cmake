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

configure_package_config_file(cmake/LmComConfig.cmake.in
    "${CMAKE_CURRENT_BINARY_DIR}/LmComConfig.cmake"
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/LmCom)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/LmComConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/LmComConfig.cmake"
    "${CMAKE_CURRENT_BINARY_DIR}/LmComConfigVersion.cmake"
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/LmCom)
