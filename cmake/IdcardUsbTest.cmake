# idcard_add_usb_test(NAME ...)
#
# As idcard_add_test, for a program that uses the emulated USB bus (idcard_usb_test_support), on its
# own or by programs that it starts: umockdev's preload library leads it there.

include(IdcardTest)

set(IDCARD_USB_PRELOAD "libumockdev-preload.so.0")
if(IDCARD_SANITIZERS MATCHES address)
  # The sanitizer wants to be the first library of all.
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so
    OUTPUT_VARIABLE asan_library OUTPUT_STRIP_TRAILING_WHITESPACE)
  get_filename_component(asan_library "${asan_library}" REALPATH)
  set(IDCARD_USB_PRELOAD "${asan_library}:${IDCARD_USB_PRELOAD}")
endif()
set(IDCARD_USB_TEST_ENVIRONMENT "LD_PRELOAD=${IDCARD_USB_PRELOAD}")

function(idcard_add_usb_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;ENVIRONMENT")
  idcard_add_test(${name}
    SOURCES ${arg_SOURCES}
    LIBRARIES ${arg_LIBRARIES} idcard_usb_test_support
    ENVIRONMENT ${IDCARD_USB_TEST_ENVIRONMENT} ${arg_ENVIRONMENT})
endfunction()
