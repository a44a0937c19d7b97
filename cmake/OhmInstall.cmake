# Install rules: the two shared libraries and the resource libraries, their
# headers under one include root, the ohm tool, an exported CMake package
# (find_package(OhmUtils) gives OhmUtils::OhmUtils) and a pkg-config file.
# `cpack -G DEB` packs the same tree as one Debian package.
include(CMakePackageConfigHelpers)

# One include root for both: the library's headers are named
# "ohmutils/...", the stand-ins' by their interface ("win/...", "mfc/...",
# "zd/...", "com/..."), so the root is a folder of the project's own.
set(OHM_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/ohmutils-${PROJECT_VERSION_MAJOR})

install(TARGETS OhmPlatform EXPORT OhmUtilsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${OHM_INSTALL_INCLUDEDIR})
install(TARGETS OhmUtils EXPORT OhmUtilsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${OHM_INSTALL_INCLUDEDIR})
install(EXPORT OhmUtilsTargets NAMESPACE OhmUtils:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OhmUtils)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/OhmUtilsConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/OhmUtilsConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OhmUtils)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/OhmUtilsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/OhmUtilsConfig.cmake ${CMAKE_BINARY_DIR}/OhmUtilsConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OhmUtils)

configure_file(${CMAKE_CURRENT_LIST_DIR}/ohmutils.pc.in ${CMAKE_BINARY_DIR}/ohmutils.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/ohmutils.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The tool finds the libraries beside it, in the prefix's library folder.
if(TARGET ohm)
  file(RELATIVE_PATH ohm_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(ohm PROPERTIES INSTALL_RPATH "$ORIGIN/${ohm_to_lib}")
  install(TARGETS ohm RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# The Debian package: the libraries, headers, package files and the tool; the
# run-time dependencies are worked out from the shared objects (dpkg-shlibdeps).
set(CPACK_PACKAGE_NAME ohmutils)
set(CPACK_PACKAGE_VENDOR "OhmUtils")
set(CPACK_PACKAGE_CONTACT "OhmUtils developers <ohmutils@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
