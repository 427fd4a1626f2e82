# Puts an application bundle together and signs it ad hoc.

# kovra_bundle_program(PLACE TARGET): an executable target, at Contents/PLACE.
function(kovra_bundle_program place target)
  set_property(GLOBAL APPEND PROPERTY kovra_bundle_targets ${target})
  kovra_bundle_item_(755 $<TARGET_FILE:${target}> ${place})
endfunction()

# kovra_bundle_script(PLACE SOURCE): an executable text, at Contents/PLACE.
function(kovra_bundle_script place source)
  kovra_bundle_item_(755 ${source} ${place})
endfunction()

# kovra_bundle_file(PLACE SOURCE): a file, at Contents/PLACE.
function(kovra_bundle_file place source)
  kovra_bundle_item_(644 ${source} ${place})
endfunction()

function(kovra_bundle_item_ mode source place)
  set_property(GLOBAL APPEND PROPERTY kovra_bundle_modes ${mode})
  set_property(GLOBAL APPEND PROPERTY kovra_bundle_sources ${source})
  set_property(GLOBAL APPEND PROPERTY kovra_bundle_places ${place})
endfunction()

# kovra_add_bundle(NAME): builds NAME in KOVRA_BUNDLE_DIRECTORY from the items named before, each
# time from nothing, so that no file of an earlier build stays inside. Modes are set here: those of a
# checkout depend on the user's mask.
function(kovra_add_bundle name)
  set(KOVRA_BUNDLE_DIRECTORY ${PROJECT_BINARY_DIR} CACHE PATH "Where the bundle is put")
  set(bundle ${KOVRA_BUNDLE_DIRECTORY}/${name})
  get_property(modes GLOBAL PROPERTY kovra_bundle_modes)
  get_property(sources GLOBAL PROPERTY kovra_bundle_sources)
  get_property(places GLOBAL PROPERTY kovra_bundle_places)
  get_property(targets GLOBAL PROPERTY kovra_bundle_targets)

  set(commands
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${bundle}
    COMMAND install -d -m 755 ${bundle}
    COMMAND install -d -m 755 ${bundle}/Contents)
  set(folders "")
  foreach(mode source place IN ZIP_LISTS modes sources places)
    cmake_path(GET place PARENT_PATH folder)
    if(folder AND NOT folder IN_LIST folders)
      list(APPEND folders "${folder}")
      list(APPEND commands COMMAND install -d -m 755 ${bundle}/Contents/${folder})
    endif()
    list(APPEND commands COMMAND install -m ${mode} ${source} ${bundle}/Contents/${place})
  endforeach()

  kovra_finishing_commands_(${bundle} "${sources}" "${places}" finishing)
  add_custom_target(bundle ALL ${commands} ${finishing} VERBATIM
    COMMENT "Putting ${name} together and signing it")
  add_dependencies(bundle ${targets})
endfunction()

# Each program is signed, the nested ones first: they are part of what the bundle's signature seals.
# A Mac's linker leaves local symbols in, which are stripped before. The hardened runtime is on, as a
# published build must have it, so that what is tried is what will ship.
function(kovra_finishing_commands_ bundle sources places result)
  if(KOVRA_CROSS_BUILD)
    set(strip)
    set(sign ${PROJECT_SOURCE_DIR}/packaging/signing/sign)
  else()
    set(strip COMMAND ${CMAKE_STRIP} -x -S)
    set(sign codesign --force --sign - --options runtime --timestamp=none)
  endif()
  set(commands)
  foreach(source place IN ZIP_LISTS sources places)
    if(source MATCHES "TARGET_FILE")
      if(strip)
        list(APPEND commands ${strip} ${bundle}/Contents/${place})
      endif()
      if(NOT place MATCHES "^MacOS/")
        cmake_path(GET place FILENAME program)
        list(APPEND commands COMMAND ${sign}
          --identifier ${KOVRA_BUNDLE_IDENTIFIER}.${program} ${bundle}/Contents/${place})
      endif()
    endif()
  endforeach()
  set(${result} ${commands} COMMAND ${sign} ${bundle} PARENT_SCOPE)
endfunction()
