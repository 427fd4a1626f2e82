# Builds for aarch64 Linux on any machine, with clang and the packages that fetch-packages unpacked
# into MAC_RUNTIME_ROOT.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MAC_RUNTIME_ROOT)

find_program(clang clang++-19 REQUIRED)
foreach(language CXX OBJCXX ASM)
  set(CMAKE_${language}_COMPILER ${clang})
  set(CMAKE_${language}_COMPILER_TARGET aarch64-linux-gnu)
endforeach()
set(CMAKE_AR llvm-ar-19 CACHE FILEPATH "")
set(CMAKE_RANLIB llvm-ranlib-19 CACHE FILEPATH "")
set(CMAKE_SYSROOT ${MAC_RUNTIME_ROOT})
set(CMAKE_EXE_LINKER_FLAGS_INIT -fuse-ld=lld-19)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -fuse-ld=lld-19)

set(CMAKE_FIND_ROOT_PATH ${MAC_RUNTIME_ROOT})
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
