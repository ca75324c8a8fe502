# How everything here is compiled.

option(PAIRWISE_TESTS "Build the tests" ON)
option(PAIRWISE_BENCH "Build the benchmarks" OFF)
option(PAIRWISE_FUZZ "Build the fuzz targets with libFuzzer (clang only)" OFF)
option(PAIRWISE_SANITIZE "Compile with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(PAIRWISE_COVERAGE "Count what runs (clang only)" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Wimplicit-fallthrough -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # It sees overlaps in the standard library's own string concatenation, where there are none.
  add_compile_options(-Wno-restrict)
endif()

if(PAIRWISE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(PAIRWISE_COVERAGE)
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fprofile-instr-generate)
endif()
if(PAIRWISE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
