# The Objective-C runtime and the two GNUstep libraries, as imported targets:
# gnustep::objc, gnustep::base and gnustep::gui.

# The runtime's headers are in the compiler's private include folder, whose other headers must not be
# found before the C library's. So the include path has a link to the one folder.
execute_process(COMMAND g++ -print-file-name=include/objc
  OUTPUT_VARIABLE runtime_headers OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT EXISTS ${runtime_headers}/runtime.h)
  message(FATAL_ERROR "The Objective-C runtime's headers were not found; packaging/install-packages installs them.")
endif()
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/objc-runtime)
file(CREATE_LINK ${runtime_headers} ${PROJECT_BINARY_DIR}/objc-runtime/objc SYMBOLIC)

execute_process(COMMAND g++ -print-file-name=libobjc.so
  OUTPUT_VARIABLE runtime_library OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
find_library(GNUSTEP_BASE gnustep-base REQUIRED)
find_library(GNUSTEP_GUI gnustep-gui REQUIRED)

add_library(gnustep::objc INTERFACE IMPORTED)
target_include_directories(gnustep::objc SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/objc-runtime)
target_link_libraries(gnustep::objc INTERFACE ${runtime_library})

# Classes are looked up by name at run time: the linker sees no use of the libraries, and with
# --as-needed would drop them.
function(kovra_import_gnustep name path)
  add_library(gnustep::${name} INTERFACE IMPORTED)
  target_link_libraries(gnustep::${name} INTERFACE
    -Wl,--push-state,--no-as-needed ${path} -Wl,--pop-state gnustep::objc)
endfunction()
kovra_import_gnustep(base ${GNUSTEP_BASE})
kovra_import_gnustep(gui ${GNUSTEP_GUI})
