# Holds what ships to it that no object is destroyed while the process exits: the background may
# still be at work with it. Only clang tells.
function(kovra_destroys_nothing_at_exit name)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${name} PRIVATE -Wexit-time-destructors)
  endif()
endfunction()

# kovra_library(NAME
#   SOURCES a.cpp ...            the same on both systems
#   PLATFORM_SOURCES Foo ...     Foo.macos.cpp or Foo.linux.cpp
#   USES target ...)             the floors below that it may call; handed on to its users
#
# One static library for one floor of the house. What a floor does not name in USES it cannot
# link, and tests/layers_test holds the includes to the same list.
function(kovra_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PLATFORM_SOURCES;USES")
  list(TRANSFORM arg_PLATFORM_SOURCES APPEND .${KOVRA_SYSTEM}.cpp)
  add_library(${name} STATIC ${arg_SOURCES} ${arg_PLATFORM_SOURCES})
  target_link_libraries(${name} PUBLIC kovra_options ${arg_USES})
  kovra_destroys_nothing_at_exit(${name})
endfunction()

# How test programs are compiled: not optimized, which takes half the time and changes nothing of
# what they test. clang reads the test library's headers precompiled; g++ 12 warns wrongly when it does.
function(kovra_compile_as_test name)
  target_compile_options(${name} PRIVATE -O0)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_precompile_headers(${name} REUSE_FROM kovra_test_headers)
  endif()
endfunction()

# Where namespaces can be had: on this machine, or in a user-mode kernel. There everything takes so many
# times as long.
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

# kovra_test(NAME SOURCES a_test.cpp ... USES target ... [NAMESPACES])
#
# A GoogleTest program of the floor beside it, each of its tests registered with ctest on its own;
# with NAMESPACES it makes mounts of its own. Linux only: the Mac build has no tests to run here.
function(kovra_test name)
  if(NOT KOVRA_SYSTEM STREQUAL "linux" OR NOT KOVRA_TESTS)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 arg "NAMESPACES" "" "SOURCES;USES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_USES} GTest::gmock_main)
  kovra_compile_as_test(${name})
  set(limit 120)
  set(variables)
  if(arg_NAMESPACES)
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR ${KOVRA_WITH_NAMESPACES})
    math(EXPR limit "${limit} * ${KOVRA_TIME_FACTOR}")
    set(variables LABELS namespaces ENVIRONMENT PRACTICE_MAC_BUILD=${PROJECT_BINARY_DIR})
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${limit} ${variables})
endfunction()

# kovra_display_test(NAME SOURCES a_test.cpp ... USES target ...)
#
# The same for tests that draw: all of them are one test of ctest, on one virtual display.
function(kovra_display_test name)
  if(NOT KOVRA_SYSTEM STREQUAL "linux" OR NOT KOVRA_TESTS)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE kovra_display_main ${arg_USES})
  kovra_compile_as_test(${name})
  add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/tests/window/on-display $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endfunction()
