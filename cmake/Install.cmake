# What `cmake --install` copies: the library with its header, the command-line tool with its manual page and its bash
# completion, and what other builds find them by, a CMake package and a pkg-config file. Everything is found relative to the place it was installed to, so that a prefix
# may be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
include(${CMAKE_CURRENT_LIST_DIR}/PublicHeader.cmake)

set(captionfxPackageDir ${CMAKE_INSTALL_LIBDIR}/cmake/captionfx)
set(captionfxPkgConfigDir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set_target_properties(captionfx_public_header PROPERTIES EXPORT_NAME public_header)
install(TARGETS captionfx captionfx_public_header EXPORT captionfxTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/src/host/caption_fx.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/captionfx
        COMPONENT development)

if(TARGET captionfx_tool)
    file(RELATIVE_PATH libraryFromTool ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(captionfx_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${libraryFromTool}")
    install(TARGETS captionfx_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/captionfx.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/tools/captionfx.bash RENAME captionfx
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/captionfx COMPONENT tool)
endif()

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libcaptionfx0 COMPONENT library)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libcaptionfx-dev COMPONENT development)

install(EXPORT captionfxTargets NAMESPACE captionfx:: DESTINATION ${captionfxPackageDir} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/captionfxConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/cmake/captionfxConfig.cmake
                              INSTALL_DESTINATION ${captionfxPackageDir}
                              NO_SET_AND_CHECK_MACRO)
# Before 1.0 a minor version may break its hosts.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cmake/captionfxConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/cmake/captionfxConfig.cmake
              ${PROJECT_BINARY_DIR}/cmake/captionfxConfigVersion.cmake
        DESTINATION ${captionfxPackageDir} COMPONENT development)

file(RELATIVE_PATH prefixFromPkgConfig ${CMAKE_INSTALL_PREFIX}/${captionfxPkgConfigDir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefixFromPkgConfig "${prefixFromPkgConfig}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/captionfx.pc.in ${PROJECT_BINARY_DIR}/cmake/captionfx.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cmake/captionfx.pc DESTINATION ${captionfxPkgConfigDir}
        COMPONENT development)
