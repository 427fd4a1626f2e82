# The tests' programs, and how ctest runs them.

# Without the tests the build needs none of their libraries.
option(KOVRA_TESTS "Build the tests, the fuzz targets and the benchmarks" ON)

# GoogleTest is the system's own package. A cross-build, which cannot use that one, compiles its
# sources for the Mac. A Mac's application is built without it all the same.
set(KOVRA_GOOGLETEST_SOURCES /usr/src/googletest)
if(KOVRA_TESTS AND KOVRA_CROSS_BUILD)
  if(EXISTS ${KOVRA_GOOGLETEST_SOURCES})
    add_library(kovra_gmock STATIC EXCLUDE_FROM_ALL
      ${KOVRA_GOOGLETEST_SOURCES}/googletest/src/gtest-all.cc
      ${KOVRA_GOOGLETEST_SOURCES}/googlemock/src/gmock-all.cc)
    foreach(part googletest googlemock)
      target_include_directories(kovra_gmock SYSTEM PUBLIC ${KOVRA_GOOGLETEST_SOURCES}/${part}/include)
      target_include_directories(kovra_gmock SYSTEM PRIVATE ${KOVRA_GOOGLETEST_SOURCES}/${part})
    endforeach()
    add_library(kovra_gmock_main STATIC EXCLUDE_FROM_ALL
      ${KOVRA_GOOGLETEST_SOURCES}/googlemock/src/gmock_main.cc)
    target_link_libraries(kovra_gmock_main PUBLIC kovra_gmock)
    add_library(GTest::gmock ALIAS kovra_gmock)
    add_library(GTest::gmock_main ALIAS kovra_gmock_main)
  else()
    message(STATUS "No test is built: GoogleTest's sources are missing; packaging/install-packages mac installs them.")
    set(KOVRA_TESTS OFF)
  endif()
elseif(KOVRA_TESTS AND KOVRA_SYSTEM STREQUAL "macos")
  find_package(GTest QUIET)
  if(NOT TARGET GTest::gmock_main)
    message(STATUS "No test is built: GoogleTest is missing; `brew install googletest` gets it.")
    set(KOVRA_TESTS OFF)
  endif()
elseif(KOVRA_TESTS)
  find_package(GTest REQUIRED)
endif()
if(KOVRA_TESTS)
  include(CTest)
  include(GoogleTest)
endif()

# Test programs are compiled without optimization, in half the time. clang uses the test library's
# headers precompiled; g++ 12 would give false warnings.
function(kovra_compile_as_test name)
  set_target_properties(${name} PROPERTIES KOVRA_IS_TEST ON)
  target_compile_options(${name} PRIVATE -O0)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_precompile_headers(${name} REUSE_FROM kovra_test_headers)
  endif()
endfunction()

# Runs a command where namespaces are allowed: on this machine, or in a user-mode kernel, where time
# limits are multiplied by the factor.
set(KOVRA_WITH_NAMESPACES ${PROJECT_SOURCE_DIR}/practice-mac/with-namespaces)
set(KOVRA_TIME_FACTOR 1)
if(DEFINED ENV{PRACTICE_MAC_TIME_FACTOR})
  set(KOVRA_TIME_FACTOR $ENV{PRACTICE_MAC_TIME_FACTOR})
endif()

# kovra_namespace_test(NAME SCRIPT file SECONDS limit LABELS label ...)
#
# A Python script as one test of ctest, which boots practice Macs of this build tree.
function(kovra_namespace_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCRIPT;SECONDS" "LABELS")
  math(EXPR limit "${arg_SECONDS} * ${KOVRA_TIME_FACTOR}")
  add_test(NAME ${name} COMMAND ${KOVRA_WITH_NAMESPACES} /usr/bin/python3 -B ${arg_SCRIPT})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${limit} LABELS "namespaces;${arg_LABELS}" ENVIRONMENT "PRACTICE_MAC_BUILD=${PROJECT_BINARY_DIR}")
endfunction()

# kovra_program_test(NAME SCRIPT file SECONDS limit LABELS label ... MAC_ARGUMENTS argument ...)
#
# A namespace test of the program, and the same with the Mac's program and these arguments.
function(kovra_program_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCRIPT;SECONDS" "LABELS;MAC_ARGUMENTS")
  kovra_namespace_test(${name} SCRIPT ${arg_SCRIPT} SECONDS ${arg_SECONDS} LABELS ${arg_LABELS})
  kovra_mac_program_test(${name} SCRIPT ${arg_SCRIPT} SECONDS ${arg_SECONDS} ARGUMENTS ${arg_MAC_ARGUMENTS})
endfunction()

# kovra_mac_program_test(NAME SCRIPT file SECONDS limit ARGUMENTS argument ...)
#
# The test mac.NAME of the Mac's program. It runs for `ctest -C mac -L mac-program` alone:
# tests/mac-program builds what it needs.
function(kovra_mac_program_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCRIPT;SECONDS" "ARGUMENTS")
  add_test(NAME mac.${name} CONFIGURATIONS mac
    COMMAND /usr/bin/python3 -B ${arg_SCRIPT} ${arg_ARGUMENTS})
  math(EXPR limit "${arg_SECONDS} * 3")
  set_tests_properties(mac.${name} PROPERTIES TIMEOUT ${limit} LABELS mac-program
    ENVIRONMENT "KOVRA_PROGRAM=macos;PRACTICE_MAC_BUILD=${PROJECT_BINARY_DIR}")
endfunction()

# The Mac programs of a cross-build are built on demand alone, by the target mac_unit_tests, and each
# is one test of ctest: the emulator is slow to start. mac-runtime/build makes what runs them. They
# import some functions of the Objective-C runtime (<objc/runtime.h>) that the application does not.
if(KOVRA_TESTS AND KOVRA_CROSS_BUILD)
  add_custom_target(mac_unit_tests)
  set(KOVRA_TEST_STUB ${PROJECT_BINARY_DIR}/test-stubs/libobjc.tbd)
  file(CONFIGURE OUTPUT ${KOVRA_TEST_STUB} CONTENT "--- !tapi-tbd
tbd-version: 4
targets: [ arm64-macos ]
install-name: '/usr/lib/libobjc.A.dylib'
current-version: 228
compatibility-version: 1
exports:
  - targets: [ arm64-macos ]
    symbols: [ _class_conformsToProtocol, _class_getInstanceMethod, _class_getSuperclass,
      _class_replaceMethod, _method_getNumberOfArguments, _method_getReturnType,
      _method_getTypeEncoding ]
...
")
endif()
function(kovra_mac_test_ name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "COMMAND")
  set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
  add_dependencies(mac_unit_tests ${name})
  target_link_libraries(${name} PRIVATE ${KOVRA_TEST_STUB})
  add_test(NAME ${name} COMMAND ${arg_COMMAND} $<TARGET_FILE:${name}> $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()

# The program of a kovra_test or a kovra_display_test, with MAIN's main(); none where it is not to be
# built. Foo.linux_test.cpp and Foo.macos_test.cpp test what one system alone has, and are left out on
# the other. A program for Linux only may test a Mac's sources with stand-ins.
function(kovra_test_program_ name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "NAMESPACES;LINUX" "MAIN" "SOURCES;USES")
  if(NOT KOVRA_TESTS OR (arg_LINUX AND NOT KOVRA_SYSTEM STREQUAL "linux"))
    return()
  endif()
  if(KOVRA_SYSTEM STREQUAL "macos")
    list(FILTER arg_SOURCES EXCLUDE REGEX "\\.linux_test\\.cpp$")
  elseif(NOT arg_LINUX)
    list(FILTER arg_SOURCES EXCLUDE REGEX "\\.macos_test\\.cpp$")
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_USES} ${arg_MAIN})
  kovra_compile_as_test(${name})
endfunction()

# kovra_test(NAME SOURCES a_test.cpp ... USES target ...
#   NAMESPACES    it makes mounts of its own
#   LINUX)        not for the Mac
#
# A GoogleTest program of the layer beside it, each of its tests registered with ctest on its own.
function(kovra_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "NAMESPACES;LINUX" "" "SOURCES;USES")
  kovra_test_program_(${name} MAIN GTest::gmock_main ${ARGN})
  if(NOT TARGET ${name})
    return()
  endif()
  if(KOVRA_CROSS_BUILD)
    kovra_mac_test_(${name} COMMAND ${PROJECT_SOURCE_DIR}/build/mac-runtime/start-mac-program)
    return()
  endif()
  set(limit 120)
  set(variables)
  if(arg_NAMESPACES AND KOVRA_SYSTEM STREQUAL "linux")
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR ${KOVRA_WITH_NAMESPACES})
    math(EXPR limit "${limit} * ${KOVRA_TIME_FACTOR}")
    set(variables LABELS namespaces ENVIRONMENT PRACTICE_MAC_BUILD=${PROJECT_BINARY_DIR})
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${limit} ${variables})
endfunction()

# kovra_display_test(NAME SOURCES a_test.cpp ... USES target ... [LINUX])
#
# The same for tests that draw: all of them are one test of ctest, on one display, which is a virtual
# one on Linux.
function(kovra_display_test name)
  kovra_test_program_(${name} MAIN kovra_display_main ${ARGN})
  if(NOT TARGET ${name})
    return()
  endif()
  set(display ${PROJECT_SOURCE_DIR}/tests/window/on-display)
  if(KOVRA_CROSS_BUILD)
    set(build ${PROJECT_SOURCE_DIR}/build)
    kovra_mac_test_(${name} COMMAND ${display} qemu-aarch64 -s 8388608
      -E GCONV_PATH=${build}/mac-runtime-packages/root/usr/lib/aarch64-linux-gnu/gconv
      ${build}/mac-runtime/mac-runtime)
    return()
  endif()
  if(KOVRA_SYSTEM STREQUAL "linux")
    add_test(NAME ${name} COMMAND ${display} $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endfunction()
