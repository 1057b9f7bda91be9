# What `cmake --install` copies: the library with its header, the command-line tool, and what other builds find them by,
# a CMake package and a pkg-config file. Everything is found relative to the place it was installed to, so that a prefix
# may be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
include(${CMAKE_CURRENT_LIST_DIR}/PublicHeader.cmake)

set(captionfxPackageDir ${CMAKE_INSTALL_LIBDIR}/cmake/captionfx)
set(captionfxPkgConfigDir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set_target_properties(captionfx_public_header PROPERTIES EXPORT_NAME public_header)
install(TARGETS captionfx captionfx_public_header EXPORT captionfxTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/src/host/caption_fx.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/captionfx)

if(TARGET captionfx_tool)
    file(RELATIVE_PATH libraryFromTool ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(captionfx_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${libraryFromTool}")
    install(TARGETS captionfx_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT captionfxTargets NAMESPACE captionfx:: DESTINATION ${captionfxPackageDir})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/captionfxConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/cmake/captionfxConfig.cmake
                              INSTALL_DESTINATION ${captionfxPackageDir}
                              NO_SET_AND_CHECK_MACRO)
# Before 1.0 a minor version may break its hosts.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cmake/captionfxConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/cmake/captionfxConfig.cmake
              ${PROJECT_BINARY_DIR}/cmake/captionfxConfigVersion.cmake
        DESTINATION ${captionfxPackageDir})

file(RELATIVE_PATH prefixFromPkgConfig ${CMAKE_INSTALL_PREFIX}/${captionfxPkgConfigDir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefixFromPkgConfig "${prefixFromPkgConfig}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/captionfx.pc.in ${PROJECT_BINARY_DIR}/cmake/captionfx.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cmake/captionfx.pc DESTINATION ${captionfxPkgConfigDir})
