# Options and compiler settings that every folder shares.

include(GNUInstallDirs)

option(IDCARD_BUILD_TESTS "Build the tests" OFF)
option(IDCARD_BUILD_BENCHMARKS "Build the benchmarks" OFF)
option(IDCARD_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(IDCARD_FUZZING "Build the fuzz targets, with clang" OFF)
option(IDCARD_COVERAGE "Count which lines of the library are run, with g++" OFF)
set(IDCARD_SANITIZERS "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")

set(IDCARD_VENDOR_READER_LIBRARY "libkvo_reader.so" CACHE STRING
  "File name of the reader maker's library, looked for at run time")
set(IDCARD_WLT_LIBRARY "libwlt_decoder.so" CACHE STRING
  "File name of the photo decoder's library, looked for at run time")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor)
# Not a bit of a picture may depend on whether the processor can multiply and add in one step.
add_compile_options(-ffp-contract=off)
# The source and object folders do not belong into what is built.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")

if(IDCARD_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()

if(IDCARD_SANITIZERS)
  add_compile_options(
    -fsanitize=${IDCARD_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${IDCARD_SANITIZERS})
endif()

if(IDCARD_FUZZING)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "IDCARD_FUZZING needs clang: set CMAKE_CXX_COMPILER to clang++.")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# A version tag of Qt would bind the programs to the release of Qt that they were built with.
add_compile_definitions(QT_NO_CAST_TO_ASCII QT_DEPRECATED_WARNINGS QT_NO_VERSION_TAGGING)
include_directories("${PROJECT_SOURCE_DIR}")
