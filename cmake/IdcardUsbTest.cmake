# idcard_add_usb_test(NAME ...)
#
# As idcard_add_test, for a program that uses the emulated USB bus (idcard_usb_test_support), on its
# own or by programs that it starts: umockdev's preload library leads it there. Where umockdev cannot
# make the bus, the test is left out.
#
# IdcardUmockdev is the library with which the bus is made. IDCARD_USB_LEFT_OUT says why there is no
# bus, if there is none.

include(IdcardTest)

add_library(IdcardUmockdev INTERFACE)
if(CMAKE_CROSSCOMPILING)
  # Of the target's packages of umockdev only the library itself can be installed beside those of
  # the build machine. The headers are the same, and the preload library is unpacked from its package.
  pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0 gobject-2.0)
  find_path(UMOCKDEV_HEADERS umockdev.h PATH_SUFFIXES umockdev-1.0 REQUIRED)
  find_library(UMOCKDEV_LIBRARY NAMES libumockdev.so.0 REQUIRED)
  target_include_directories(IdcardUmockdev SYSTEM INTERFACE "${UMOCKDEV_HEADERS}")
  target_link_libraries(IdcardUmockdev INTERFACE "${UMOCKDEV_LIBRARY}" PkgConfig::GIO)

  set(umockdev_folder "${PROJECT_BINARY_DIR}/umockdev")
  set(IDCARD_USB_PRELOAD
    "${umockdev_folder}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/libumockdev-preload.so.0")
  if(NOT EXISTS "${IDCARD_USB_PRELOAD}")
    execute_process(
      COMMAND "${PROJECT_SOURCE_DIR}/scripts/make/unpacked-package" umockdev:arm64 "${umockdev_folder}"
      RESULT_VARIABLE unpacked)
    if(NOT unpacked EQUAL 0 OR NOT EXISTS "${IDCARD_USB_PRELOAD}")
      message(FATAL_ERROR "The tests of the USB road need ${IDCARD_USB_PRELOAD}, which "
        "scripts/make/unpacked-package could not unpack.")
    endif()
  endif()
  # For the program inside; the emulator's own loader must not see it.
  set(IDCARD_USB_TEST_ENVIRONMENT "QEMU_SET_ENV=LD_PRELOAD=${IDCARD_USB_PRELOAD}")
else()
  pkg_check_modules(UMOCKDEV REQUIRED IMPORTED_TARGET umockdev-1.0)
  if(UMOCKDEV_VERSION VERSION_LESS 0.16)
    set(IDCARD_USB_LEFT_OUT "the emulated USB bus needs umockdev 0.16, and this is ${UMOCKDEV_VERSION}")
    message(STATUS "Every test on the emulated USB bus is left out: ${IDCARD_USB_LEFT_OUT}")
  endif()
  target_link_libraries(IdcardUmockdev INTERFACE PkgConfig::UMOCKDEV)

  set(IDCARD_USB_PRELOAD "libumockdev-preload.so.0")
  # The sanitizer must be the first library of all.
  foreach(sanitizer address:libasan.so thread:libtsan.so)
    string(REPLACE ":" ";" sanitizer "${sanitizer}")
    list(GET sanitizer 0 kind)
    list(GET sanitizer 1 library)
    if(IDCARD_SANITIZERS MATCHES ${kind})
      execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
        OUTPUT_VARIABLE library OUTPUT_STRIP_TRAILING_WHITESPACE)
      get_filename_component(library "${library}" REALPATH)
      set(IDCARD_USB_PRELOAD "${library}:${IDCARD_USB_PRELOAD}")
    endif()
  endforeach()
  set(IDCARD_USB_TEST_ENVIRONMENT "LD_PRELOAD=${IDCARD_USB_PRELOAD}")
endif()

function(idcard_add_usb_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;ENVIRONMENT")
  if(IDCARD_USB_LEFT_OUT)
    # The program only carries what else is set for it, and is not built.
    add_executable(${name} EXCLUDE_FROM_ALL ${arg_SOURCES})
    idcard_leave_out_test(${name} "${IDCARD_USB_LEFT_OUT}")
    return()
  endif()
  idcard_add_test(${name}
    SOURCES ${arg_SOURCES}
    LIBRARIES ${arg_LIBRARIES} idcard_usb_test_support
    ENVIRONMENT ${IDCARD_USB_TEST_ENVIRONMENT} ${arg_ENVIRONMENT})
endfunction()
