# kovra_bundle(TARGET [ALL]
#   FOLDER folder             where kovraUninstaller.app is put
#   PROGRAM target            the program of the bundle
#   EXECUTABLES name ...      resources that are run: targets, or scripts by their paths
#   RESOURCES file ...        resources that are read)
#
# The target TARGET puts an application bundle together: on Linux in GNUstep's layout, with the program
# and Resources/ directly inside; for the Mac in its layout, stripped and signed ad hoc. A change of any
# part rebuilds the whole bundle, so that no file of an earlier build is left in it.
function(kovra_bundle name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ALL" "FOLDER;PROGRAM" "EXECUTABLES;RESOURCES")
  set(bundle ${arg_FOLDER}/kovraUninstaller.app)
  if(KOVRA_SYSTEM STREQUAL "macos")
    set(program ${bundle}/Contents/MacOS/kovraUninstaller)
    set(info ${bundle}/Contents/Info.plist)
    set(resources ${bundle}/Contents/Resources)
    set(folders ${bundle} ${bundle}/Contents ${bundle}/Contents/MacOS ${resources})
  else()
    set(program ${bundle}/kovraUninstaller)
    set(resources ${bundle}/Resources)
    set(info ${resources}/Info-gnustep.plist)
    set(folders ${bundle} ${resources})
  endif()

  # Modes are set here: those of a checkout depend on the user's umask.
  set(sources)
  set(places)
  set(commands
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${bundle}
    COMMAND install -d -m 755 ${folders})
  configure_file(${PROJECT_SOURCE_DIR}/resources/Info.plist.in ${CMAKE_CURRENT_BINARY_DIR}/Info.plist @ONLY)
  kovra_place_(755 $<TARGET_FILE:${arg_PROGRAM}> ${program})
  kovra_place_(644 ${CMAKE_CURRENT_BINARY_DIR}/Info.plist ${info})
  if(KOVRA_SYSTEM STREQUAL "macos")
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/PkgInfo CONTENT "APPL????")
    kovra_place_(644 ${CMAKE_CURRENT_BINARY_DIR}/PkgInfo ${bundle}/Contents/PkgInfo)
  endif()
  set(helpers)
  foreach(executable IN LISTS arg_EXECUTABLES)
    if(TARGET ${executable})
      list(APPEND helpers ${executable})
      kovra_place_(755 $<TARGET_FILE:${executable}> ${resources}/${executable})
    else()
      cmake_path(GET executable FILENAME file)
      kovra_place_(755 ${executable} ${resources}/${file})
    endif()
  endforeach()
  foreach(resource IN LISTS arg_RESOURCES)
    cmake_path(GET resource FILENAME file)
    kovra_place_(644 ${resource} ${resources}/${file})
  endforeach()

  if(KOVRA_SYSTEM STREQUAL "macos")
    list(TRANSFORM helpers PREPEND ${resources}/ OUTPUT_VARIABLE nested)
    kovra_finishing_commands_(${bundle} ${program} "${nested}" finishing signer)
    list(APPEND commands ${finishing})
    list(APPEND sources ${signer})
  endif()
  add_custom_command(OUTPUT ${places} ${commands}
    DEPENDS ${sources} ${arg_PROGRAM} ${helpers} VERBATIM
    COMMENT "Putting ${bundle} together")
  if(arg_ALL)
    set(arg_ALL ALL)
  else()
    set(arg_ALL)
  endif()
  add_custom_target(${name} ${arg_ALL} DEPENDS ${places})
endfunction()

# Adds a file to the lists of the bundle.
macro(kovra_place_ mode source place)
  list(APPEND sources ${source})
  list(APPEND places ${place})
  list(APPEND commands COMMAND install -m ${mode} ${source} ${place})
endmacro()

# The commands that strip and sign a Mac's bundle, and the files of the signer. Nested programs are
# signed first, since the bundle's signature covers them. A Mac's linker leaves local symbols, which are
# stripped before. The hardened runtime is on, so that the tests run what will be published.
function(kovra_finishing_commands_ bundle program nested result signer)
  set(commands)
  set(files)
  if(KOVRA_CROSS_BUILD)
    set(signing ${PROJECT_SOURCE_DIR}/packaging/signing)
    set(sign ${signing}/sign)
    file(GLOB files CONFIGURE_DEPENDS ${sign} ${signing}/*.py)
  else()
    set(sign codesign --force --sign - --options runtime --timestamp=none)
    foreach(file IN LISTS program nested)
      list(APPEND commands COMMAND ${CMAKE_STRIP} -x -S ${file})
    endforeach()
  endif()
  foreach(file IN LISTS nested)
    cmake_path(GET file FILENAME helper)
    list(APPEND commands COMMAND ${sign} --identifier ${KOVRA_BUNDLE_IDENTIFIER}.${helper} ${file})
  endforeach()
  set(${result} ${commands} COMMAND ${sign} ${bundle} PARENT_SCOPE)
  set(${signer} ${files} PARENT_SCOPE)
endfunction()
