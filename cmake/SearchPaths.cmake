# Where the loader finds our own libraries, in the build tree and installed: folders seen from the
# file that needs them, so that neither tree depends on its place.
#
# CMake's own exchange of search paths during an installation ends those of the build tree in empty
# parts, and an empty part is the folder that a program is started in. So each file is linked with
# the path of the build tree, long enough to be overwritten by the installed one.

set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# quorvel_library_folder(TARGET BUILT folder INSTALLED folder DESTINATION folder)
# BUILT and INSTALLED are the folder of libquorvel_platform.so as seen from the target's file.
# To be called after the install(TARGETS) of the target, whose DESTINATION is repeated here.
function(quorvel_library_folder target)
  # Some packagers allow no search path in an installed file; the loader's own then leads to the
  # libraries, or LD_LIBRARY_PATH.
  if(CMAKE_SKIP_RPATH OR CMAKE_SKIP_INSTALL_RPATH)
    return()
  endif()
  cmake_parse_arguments(folder "" "BUILT;INSTALLED;DESTINATION" "" ${ARGN})
  set(built "$ORIGIN/${folder_BUILT}")
  set(installed "$ORIGIN/${folder_INSTALLED}")
  string(LENGTH "${installed}" room)
  string(LENGTH "${built}" length)
  while(length LESS room)
    string(APPEND built "/.")
    string(LENGTH "${built}" length)
  endwhile()
  set_target_properties(${target} PROPERTIES
    BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "${built}")

  set(destination "${folder_DESTINATION}")
  if(NOT IS_ABSOLUTE "${destination}")
    set(destination "\${CMAKE_INSTALL_PREFIX}/${destination}")
  endif()
  install(CODE "file(RPATH_CHANGE
    FILE \"\$ENV{DESTDIR}${destination}/$<TARGET_FILE_NAME:${target}>\"
    OLD_RPATH \"\\${built}\" NEW_RPATH \"\\${installed}\")")
endfunction()
