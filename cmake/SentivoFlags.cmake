# Compiler settings shared by every target of the project.
set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

add_library(sentivo_flags INTERFACE)
target_compile_options(sentivo_flags INTERFACE
    -Wall -Wextra $<$<BOOL:${SENTIVO_WERROR}>:-Werror>
    # Scores must not depend on the build: no fused multiply-add, no
    # reassociation, no host-specific instruction set. The library never
    # reads errno after a square root, so it need not be set there: that lets
    # the root of a whole row run as one vector instruction per two values,
    # with the same correctly rounded results.
    -ffp-contract=off -fno-fast-math -fno-math-errno)

if(SENTIVO_SANITIZE)
    target_compile_options(sentivo_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(sentivo_flags INTERFACE -fsanitize=address,undefined)
endif()

if(SENTIVO_TSAN)
    target_compile_options(sentivo_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(sentivo_flags INTERFACE -fsanitize=thread)
endif()

# A fuzzing build instruments the whole library for coverage and the
# sanitizers; the fuzz targets then link libFuzzer's driver.
if(SENTIVO_BUILD_FUZZ AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(sentivo_flags INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(sentivo_flags INTERFACE -fsanitize=address,undefined)
endif()
