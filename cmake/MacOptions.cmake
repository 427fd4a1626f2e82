include_guard(GLOBAL)
# How the shipped program is compiled and linked, by the vendor's compiler and by the cross-compiler.

# No build path in the binary: builds in different folders give the same bytes.
target_compile_options(kovra_options INTERFACE
  -ffile-prefix-map=${PROJECT_BINARY_DIR}=build
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
  -fstack-protector-strong)

# Defaults of the vendor's compiler that the cross-compiler lacks: frame pointers, which the system's
# tools follow, and synchronous unwind tables. With both, compact unwind tables suffice, and the larger
# DWARF tables are left out. The cross-compiler's driver has no -Oz, so the option goes to the compiler
# itself. The tests' own code is not optimized.
if(KOVRA_CROSS_BUILD)
  target_compile_options(kovra_options INTERFACE
    -fno-omit-frame-pointer -fno-asynchronous-unwind-tables
    "SHELL:$<$<NOT:$<BOOL:$<TARGET_PROPERTY:KOVRA_IS_TEST>>>:-Xclang -Oz>")
endif()

# Unreachable functions are left out.
target_link_options(kovra_options INTERFACE -Wl,-dead_strip)

# In a cross-build the frameworks are text stubs with the names that packaging/symbols lists, so that
# only names known to exist can be linked.
if(KOVRA_CROSS_BUILD)
  set(symbols ${PROJECT_SOURCE_DIR}/packaging/symbols)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${symbols}/libraries.toml)
  execute_process(COMMAND ${symbols}/make-stubs ${PROJECT_BINARY_DIR}/stubs COMMAND_ERROR_IS_FATAL ANY)
  set_property(TARGET kovra_options APPEND PROPERTY INTERFACE_LINK_DEPENDS
    ${symbols}/libraries.toml ${PROJECT_SOURCE_DIR}/packaging/cross/ld)
  target_link_options(kovra_options INTERFACE -F${PROJECT_BINARY_DIR}/stubs -L${PROJECT_BINARY_DIR}/stubs)
endif()

# The demangler, the largest part of the static C++ library, comes from the system's libc++abi, which
# every Mac has; the rest of the library is linked statically.
function(kovra_slim target)
  if(KOVRA_CROSS_BUILD)
    target_link_options(${target} PRIVATE -lc++abi)
  endif()
endfunction()
