# idcard_add_test(NAME SOURCES file... [LIBRARIES target...] [ENVIRONMENT VAR=value...])
#
# One GoogleTest program, registered with CTest under its own name.
#
# idcard_add_test_run(NAME PROGRAM
#   [SCREEN WIDTHxHEIGHTxDEPTH DPI number] [ARGUMENTS argument...] [ENVIRONMENT VAR=value...])
#
# One more run of such a program. A run has a folder of its own and a fixed locale, goes under the
# emulator in a cross build, and fails when it runs no test. With a screen it is shown on an X server
# with exactly that one, otherwise on Qt's offscreen platform.
#
# idcard_leave_out_test(NAME REASON)
#
# Registers in place of a test that cannot be made here one that says so, as a test also does that
# leaves out a part of itself: "Left out: REASON". scripts/test repeats these lines at its end.
#
# idcard_find_program(VARIABLE NAME)
#
# A program of the build machine that the tests run.

# CMake's own module for it knows no gmock before CMake 3.20.
find_package(GTest 1.10 CONFIG REQUIRED)
find_package(Threads REQUIRED)

# Qt is built without the thread sanitizer, which does not see how its threads wait for each other.
set(IDCARD_TSAN_OPTIONS
  "suppressions=${PROJECT_SOURCE_DIR}/tests/support/qt_threads.supp:second_deadlock_stack=1")
# A home that can be written, and where the fonts' cache is made only once.
set(IDCARD_TEST_HOME "${PROJECT_BINARY_DIR}/tests/home")
file(MAKE_DIRECTORY "${IDCARD_TEST_HOME}")
# What a test finds of the machine and its user, the same everywhere. An empty variable is as none.
set(IDCARD_TEST_ENVIRONMENT
  "LC_ALL=C.UTF-8"
  "LANGUAGE="
  "TZ=UTC"
  "SHELL=/bin/sh"
  "HOME=${IDCARD_TEST_HOME}"
  "XDG_CACHE_HOME="
  "XDG_CONFIG_DIRS=/etc/xdg"
  "XDG_CONFIG_HOME="
  "XDG_CURRENT_DESKTOP="
  "XDG_DATA_DIRS=/usr/local/share:/usr/share"
  "XDG_DATA_HOME="
  "XDG_RUNTIME_DIR="
  # Otherwise a bus would be started where there is a screen.
  "DBUS_SESSION_BUS_ADDRESS=disabled:"
  "G_MESSAGES_DEBUG="
  "LIBUSB_DEBUG=0"
  "QT_QPA_PLATFORM=offscreen"
  "QT_QPA_PLATFORMTHEME=generic"
  "QT_STYLE_OVERRIDE=Fusion"
  "QT_IM_MODULE=compose"
  "QT_PLUGIN_PATH="
  "QT_QPA_PLATFORM_PLUGIN_PATH="
  "QT_QPA_GENERIC_PLUGINS="
  "QT_ACCESSIBILITY=0"
  "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=0"
  "QT_DEBUG_PLUGINS=0"
  "QT_LOGGING_CONF="
  "QT_LOGGING_RULES="
  "QT_MESSAGE_PATTERN="
  "QT_AUTO_SCREEN_SCALE_FACTOR=0"
  "QT_ENABLE_HIGHDPI_SCALING=0"
  "QT_SCREEN_SCALE_FACTORS="
  "QT_SCALE_FACTOR="
  "QT_FONT_DPI="
  "QT_USE_PHYSICAL_DPI=0"
  # Nothing here draws with OpenGL, and Mesa's drivers leak.
  "QT_XCB_GL_INTEGRATION=none"
  # The sanitizer's guess where a thread keeps its dynamic storage can be wrong, and then its search
  # for leaks crashes on what it takes for pointers; it does not guess any more.
  "ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:intercept_tls_get_addr=0"
  "UBSAN_OPTIONS=print_stacktrace=1"
  # The whole call stack is needed to distinguish Qt's leaks from our own.
  "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/qt_leaks.supp:print_suppressions=0:fast_unwind_on_malloc=0"
  "TSAN_OPTIONS=${IDCARD_TSAN_OPTIONS}"
  # The fonts that the project chose for its pictures.
  "FONTCONFIG_FILE=${PROJECT_SOURCE_DIR}/packaging/fonts/demo-fonts.conf")
if(CMAKE_CROSSCOMPILING)
  # A test that starts a program of this build starts it under the emulator too. Without a prefix the
  # emulator looks for no file elsewhere first: for that it has a lock, which a child that was forked
  # while another thread opened a file would wait for for ever.
  list(APPEND IDCARD_TEST_ENVIRONMENT
    "IDCARD_TEST_EMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}" "QEMU_LD_PREFIX=/")
endif()

function(idcard_find_program variable name)
  find_program(${variable} ${name})
  if(NOT ${variable})
    message(FATAL_ERROR
      "The tests need the program ${name}: scripts/install-packages test installs it.")
  endif()
endfunction()

function(idcard_leave_out_test name reason)
  add_test(NAME ${name} COMMAND "${CMAKE_COMMAND}" -E echo "Left out: ${reason}")
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "Left out: ")
endfunction()

function(idcard_add_test_run name program)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "SCREEN;DPI" "ARGUMENTS;ENVIRONMENT")
  set(command ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${program}> ${arg_ARGUMENTS})
  set(environment ${IDCARD_TEST_ENVIRONMENT})
  if(arg_SCREEN)
    idcard_find_program(IDCARD_XVFB_RUN xvfb-run)
    # Qt takes an empty address of a session manager for one.
    list(INSERT command 0 "${CMAKE_COMMAND}" -E env --unset=SESSION_MANAGER
      # While it resets, when its last client has gone, it takes no next one.
      "${IDCARD_XVFB_RUN}" -a -s "-noreset -screen 0 ${arg_SCREEN} -dpi ${arg_DPI}")
    # Qt has threads of its own for the X server and for the desktop's bus.
    list(APPEND environment "QT_QPA_PLATFORM=xcb" "IDCARD_TEST_DPI=${arg_DPI}"
      "TSAN_OPTIONS=${IDCARD_TSAN_OPTIONS}:ignore_noninstrumented_modules=1")
  endif()
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}.run")
  file(MAKE_DIRECTORY "${folder}")
  add_test(NAME ${name} COMMAND ${command} WORKING_DIRECTORY "${folder}")
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "${environment};${arg_ENVIRONMENT}"
    FAIL_REGULAR_EXPRESSION "Running 0 tests"
    TIMEOUT 600)
  if(arg_SCREEN)
    # Two servers that start at once may choose the same display.
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK x_server)
  endif()
endfunction()

function(idcard_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;ENVIRONMENT")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE
    ${arg_LIBRARIES} idcard_test_support idcard_qt_warnings GTest::gmock_main Threads::Threads)
  # What is tested is optimised; the tests themselves are sooner built than run.
  target_compile_options(${name} PRIVATE -O0 -g1)
  # The emulated bus comes with a switch for threads, with which the headers would not be the same.
  if(IDCARD_PRECOMPILED_HEADERS AND NOT "idcard_usb_test_support" IN_LIST arg_LIBRARIES)
    target_precompile_headers(${name} REUSE_FROM idcard_test_headers)
  endif()
  idcard_add_test_run(${name} ${name} ENVIRONMENT ${arg_ENVIRONMENT})
endfunction()
