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
