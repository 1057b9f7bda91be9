# Options of everything that is built here, as the interface target `captionfx_options`.
add_library(captionfx_options INTERFACE)
target_compile_features(captionfx_options INTERFACE cxx_std_20)
target_compile_options(captionfx_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wdouble-promotion -Werror
    # A frame is the same bytes with every compiler and on every machine: no fused multiply-add behind our back.
    -ffp-contract=off)

if(WIN32)
    target_compile_definitions(captionfx_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0602)
    # A host gets one file: MinGW's run-time libraries are inside.
    target_link_options(captionfx_options INTERFACE -static)
endif()

if(CAPTIONFX_FUZZ)
    target_compile_options(captionfx_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(CAPTIONFX_SANITIZE)
    target_compile_options(captionfx_options INTERFACE
        -fsanitize=${CAPTIONFX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(captionfx_options INTERFACE -fsanitize=${CAPTIONFX_SANITIZE})
endif()
