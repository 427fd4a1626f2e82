# Warns of objects with static storage duration that are destroyed at exit: a background thread may
# still use them then. Only clang has this warning.
function(kovra_destroys_nothing_at_exit name)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${name} PRIVATE -Wexit-time-destructors)
  endif()
endfunction()

# kovra_library(NAME
#   SOURCES a.cpp ...            the same on both systems
#   PLATFORM_SOURCES Foo ...     Foo.macos.cpp or Foo.linux.cpp
#   USES target ...)             the lower layers that it may call; handed on to its users
#
# One static library of a layer. A layer links and includes nothing that it does not name in USES:
# tests/layers.py reads the layers and their order from these lists.
function(kovra_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PLATFORM_SOURCES;USES")
  list(TRANSFORM arg_PLATFORM_SOURCES APPEND .${KOVRA_SYSTEM}.cpp)
  add_library(${name} STATIC ${arg_SOURCES} ${arg_PLATFORM_SOURCES})
  target_link_libraries(${name} PUBLIC kovra_options ${arg_USES})
  kovra_destroys_nothing_at_exit(${name})
endfunction()
