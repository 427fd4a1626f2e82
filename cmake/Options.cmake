# Language, warnings, sanitizers and the name of the system that is built for.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Platform differences are files with a suffix: Foo.macos.cpp and Foo.linux.cpp.
if(CMAKE_SYSTEM_NAME STREQUAL "Darwin")
  set(KOVRA_SYSTEM macos)
elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  set(KOVRA_SYSTEM linux)
else()
  message(FATAL_ERROR "kovra Uninstaller is built for macOS, and for Linux to test it; not for ${CMAKE_SYSTEM_NAME}.")
endif()

set(KOVRA_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

add_library(kovra_options INTERFACE)
target_include_directories(kovra_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(kovra_options INTERFACE -Wall -Wextra -Wpedantic)
# Warnings are errors with the compilers that every change is built with. Other compilers may have
# further warnings, which must not stop the build.
set(known FALSE)
if(KOVRA_CROSS_BUILD)
  set(known TRUE)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^(12|14)\\.")
  set(known TRUE)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^19\\.")
  set(known TRUE)
endif()
if(known)
  target_compile_options(kovra_options INTERFACE -Werror)
endif()
# g++ 12 has false -Wrestrict warnings in its own std::string.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(kovra_options INTERFACE -Wno-restrict)
endif()
if(KOVRA_SANITIZE)
  target_compile_options(kovra_options INTERFACE
    -fsanitize=${KOVRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kovra_options INTERFACE -fsanitize=${KOVRA_SANITIZE})
  target_sources(kovra_options INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${PROJECT_SOURCE_DIR}/cmake/sanitizers/DefaultOptions.cpp>)
endif()

# Each program writes its coverage counters to the profile that LLVM_PROFILE_FILE names, if it is set.
# The counters are mapped from the profile while the program runs (continuous mode), so that they
# survive _exit and signals.
option(KOVRA_COVERAGE "Count the lines that run (clang)" OFF)
if(KOVRA_COVERAGE)
  target_compile_options(kovra_options INTERFACE
    -fprofile-instr-generate=/dev/null -fcoverage-mapping "SHELL:-mllvm -runtime-counter-relocation")
  target_link_options(kovra_options INTERFACE -fprofile-instr-generate)
endif()

if(KOVRA_SYSTEM STREQUAL "linux")
  include(GNUstep)
endif()
