include_guard(GLOBAL)
# How the shipped program is compiled and linked, by the vendor's compiler and by the cross-compiler.

# No path of the machine that built it stays in the binary, so that two builds from different
# folders are alike byte for byte.
target_compile_options(kovra_options INTERFACE
  -ffile-prefix-map=${PROJECT_BINARY_DIR}=build
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
  -fstack-protector-strong)

# What the vendor's compiler does unasked and the cross-compiler does not: frame pointers, which the
# system's own tools follow, and unwinding only from calls; with both, the compact tables say all, and
# the large ones fall away. Its driver also knows one way only to make code small, and not the smallest.
if(KOVRA_CROSS_BUILD)
  target_compile_options(kovra_options INTERFACE
    -fno-omit-frame-pointer -fno-asynchronous-unwind-tables "SHELL:-Xclang -Oz")
endif()

# Functions that nothing reaches are left out.
target_link_options(kovra_options INTERFACE -Wl,-dead_strip)

# Away from a Mac, the frameworks are text stubs with the names that packaging/symbols lists: a name
# that was not found in the system's own headers cannot be linked.
if(KOVRA_CROSS_BUILD)
  set(symbols ${PROJECT_SOURCE_DIR}/packaging/symbols)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${symbols}/libraries.toml)
  execute_process(COMMAND ${symbols}/make-stubs ${PROJECT_BINARY_DIR}/stubs COMMAND_ERROR_IS_FATAL ANY)
  set_property(TARGET kovra_options APPEND PROPERTY INTERFACE_LINK_DEPENDS
    ${symbols}/libraries.toml ${PROJECT_SOURCE_DIR}/packaging/cross/ld)
  target_link_options(kovra_options INTERFACE -F${PROJECT_BINARY_DIR}/stubs -L${PROJECT_BINARY_DIR}/stubs)
endif()

# The demangler is the largest part of the C++ library that is linked in, and every Mac has it in a
# library that each of its programs loads: the program holds the others alone.
function(kovra_slim target)
  if(KOVRA_CROSS_BUILD)
    target_link_options(${target} PRIVATE -lc++abi)
  endif()
endfunction()
