# What the Windows build takes from Debian's packages for Linux: libraries of headers alone, each seen through a folder of
# its own, so that no other header of Linux comes in; and GoogleTest, built from its sources.

# header_package(TARGET PLACE LINK): an interface target that finds PLACE, a folder under /usr/include, as LINK/...
function(header_package target place link)
    string(REPLACE "::" "_" folder ${target})
    set(include ${PROJECT_BINARY_DIR}/headers/${folder})
    file(MAKE_DIRECTORY ${include})
    if(NOT EXISTS /usr/include/${place})
        message(FATAL_ERROR "/usr/include/${place} is missing: run scripts/install-dependencies --all")
    endif()
    file(CREATE_LINK /usr/include/${place} ${include}/${link} SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE ${include})
endfunction()

header_package(utf8::cpp utf8cpp/utf8 utf8)
file(CREATE_LINK /usr/include/utf8cpp/utf8.h ${PROJECT_BINARY_DIR}/headers/utf8_cpp/utf8.h SYMBOLIC)
header_package(CLI11::CLI11 CLI CLI)
header_package(PkgConfig::HIGHWAY hwy hwy)
header_package(nlohmann_json::nlohmann_json nlohmann nlohmann)
header_package(stb::stb stb stb)

if(CAPTIONFX_TESTS)
    set(INSTALL_GTEST OFF CACHE BOOL "Only for our tests" FORCE)
    add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    foreach(target gtest gtest_main gmock gmock_main)
        if(NOT TARGET GTest::${target})
            add_library(GTest::${target} ALIAS ${target})
        endif()
    endforeach()
endif()
