# Install rules: the two shared libraries, their headers, an exported CMake
# package (find_package(OhmUtils) gives OhmUtils::OhmUtils) and a pkg-config file.
include(CMakePackageConfigHelpers)

# The stand-ins' headers go under ohmutils/platform, the library's under ohmutils.
install(TARGETS OhmPlatform EXPORT OhmUtilsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ohmutils/platform)
install(TARGETS OhmUtils EXPORT OhmUtilsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT OhmUtilsTargets NAMESPACE OhmUtils:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OhmUtils)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/OhmUtilsConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/OhmUtilsConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OhmUtils)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/OhmUtilsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/OhmUtilsConfig.cmake ${CMAKE_BINARY_DIR}/OhmUtilsConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OhmUtils)

configure_file(${CMAKE_CURRENT_LIST_DIR}/ohmutils.pc.in ${CMAKE_BINARY_DIR}/ohmutils.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/ohmutils.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
