# What other programs load: the Python module and the plugins. Each is built where what it needs is installed, or where it
# is asked for. They are no use with a sanitizer: the programs that load them are built without.
include(CMakeDependentOption)

find_package(Python 3.10 QUIET COMPONENTS Interpreter Development.Module)
find_package(pybind11 2.10 QUIET CONFIG)
set(canLoadPlugins "CAPTIONFX_TOOLS;UNIX;NOT CAPTIONFX_SANITIZE")
cmake_dependent_option(CAPTIONFX_PYTHON "Build the Python module" ${pybind11_FOUND} "${canLoadPlugins}" OFF)
if(CAPTIONFX_PYTHON)
    find_package(pybind11 2.10 REQUIRED CONFIG)
    add_subdirectory(python)
endif()

pkg_check_modules(FREI0R QUIET IMPORTED_TARGET frei0r)
pkg_check_modules(GSTREAMER QUIET IMPORTED_TARGET gstreamer-video-1.0>=1.20)
if(FREI0R_FOUND OR GSTREAMER_FOUND)
    set(canBuildPlugins ON)
else()
    set(canBuildPlugins OFF)
endif()
cmake_dependent_option(CAPTIONFX_PLUGINS "Build the plugins for frei0r and GStreamer, whichever headers there are"
                       ${canBuildPlugins} "${canLoadPlugins}" OFF)
if(CAPTIONFX_PLUGINS AND FREI0R_FOUND)
    add_subdirectory(plugins/frei0r)
endif()
if(CAPTIONFX_PLUGINS AND GSTREAMER_FOUND)
    add_subdirectory(plugins/gstreamer)
endif()
