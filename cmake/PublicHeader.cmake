# The public header under the path that hosts use, <captionfx/caption_fx.h>, in the build tree as it will be installed.
# `captionfx_public_header` carries the include folder; whoever links `captionfx` gets it from there.
include_guard(GLOBAL)
include(GNUInstallDirs)

configure_file(${PROJECT_SOURCE_DIR}/src/host/caption_fx.h
               ${PROJECT_BINARY_DIR}/include/captionfx/caption_fx.h COPYONLY)

add_library(captionfx_public_header INTERFACE)
target_compile_features(captionfx_public_header INTERFACE cxx_std_17)
target_include_directories(captionfx_public_header INTERFACE
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
