# The bundle as GNUstep wants it: the executable and Resources/ directly inside.
#
# kovra_linux_bundle(PROGRAM target HELPERS target ... RESOURCES file ...)
#
# Makes ${PROJECT_BINARY_DIR}/kovraUninstaller.app whole after each build of one of its parts.
function(kovra_linux_bundle)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "PROGRAM" "HELPERS;RESOURCES")
  set(bundle ${PROJECT_BINARY_DIR}/kovraUninstaller.app)
  set(resources ${bundle}/Resources)
  configure_file(${PROJECT_SOURCE_DIR}/resources/Info.plist.in ${resources}/Info-gnustep.plist @ONLY)
  set_target_properties(${arg_PROGRAM} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${bundle})

  set(placed)
  foreach(helper IN LISTS arg_HELPERS)
    add_custom_command(OUTPUT ${resources}/${helper}
      COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${helper}> ${resources}/${helper}
      DEPENDS ${helper} VERBATIM)
    list(APPEND placed ${resources}/${helper})
  endforeach()
  foreach(file IN LISTS arg_RESOURCES)
    cmake_path(GET file FILENAME name)
    add_custom_command(OUTPUT ${resources}/${name}
      COMMAND ${CMAKE_COMMAND} -E copy ${file} ${resources}/${name}
      DEPENDS ${file} VERBATIM)
    list(APPEND placed ${resources}/${name})
  endforeach()
  add_custom_target(linux_bundle ALL DEPENDS ${arg_PROGRAM} ${placed})
endfunction()
