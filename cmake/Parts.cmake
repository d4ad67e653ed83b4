# The parts of the program that need libraries which not every machine has. Each is built where its
# libraries are installed; QUORVEL_WITH_<PART>=ON makes a missing one an error, OFF leaves the part
# out.

# quorvel_part(PART WHAT MODULES module... [NEEDS part...]): sets QUORVEL_HAS_<PART>. WHAT describes
# the part in the cache; NEEDS names other parts without which it is not built.
function(quorvel_part part what)
  cmake_parse_arguments(part "" "" "MODULES;NEEDS" ${ARGN})
  set(QUORVEL_WITH_${part} AUTO CACHE STRING "Build ${what}: ON, OFF or AUTO")
  set_property(CACHE QUORVEL_WITH_${part} PROPERTY STRINGS AUTO ON OFF)
  set(wanted ${QUORVEL_WITH_${part}})
  set(QUORVEL_HAS_${part} OFF PARENT_SCOPE)
  if(NOT wanted STREQUAL AUTO AND NOT wanted)
    message(STATUS "QUORVEL_WITH_${part} is off: ${what} is not built")
    return()
  endif()

  set(missing "")
  foreach(needed ${part_NEEDS})
    if(NOT QUORVEL_HAS_${needed})
      list(APPEND missing "QUORVEL_WITH_${needed}")
    endif()
  endforeach()
  foreach(module ${part_MODULES})
    string(MAKE_C_IDENTIFIER "quorvel_part_${module}" prefix)
    pkg_check_modules(${prefix} QUIET ${module})
    if(NOT ${prefix}_FOUND)
      list(APPEND missing ${module})
    endif()
  endforeach()
  if(NOT missing)
    set(QUORVEL_HAS_${part} ON PARENT_SCOPE)
    return()
  endif()
  list(JOIN missing ", " missing)
  if(NOT wanted STREQUAL AUTO)
    message(FATAL_ERROR "QUORVEL_WITH_${part} is on, but these are missing: ${missing}")
  endif()
  message(STATUS "${what} is not built, as these are missing: ${missing}")
endfunction()

quorvel_part(EDS "the part for the calendars of Evolution Data Server" MODULES libecal-2.0>=3.44)
quorvel_part(WINDOW "the window of the agenda" MODULES gtk+-3.0 x11)
quorvel_part(LAYER_SHELL "the part for a layer of the desktop" MODULES gtk-layer-shell-0>=0.6
  NEEDS WINDOW)
quorvel_part(SETTINGS "the window of the settings" MODULES gtk4 libadwaita-1>=1.2)
quorvel_part(PHOSH "the phone shell's plugin" MODULES phosh-plugins gtk+-3.0)

# The tests run the whole program, on a phone's shell only where there is one.
if(BUILD_TESTING)
  foreach(part EDS WINDOW LAYER_SHELL SETTINGS)
    if(NOT QUORVEL_HAS_${part})
      message(FATAL_ERROR "The tests need every part, and ${part} is not built: "
        "see above, or configure with -DBUILD_TESTING=OFF")
    endif()
  endforeach()
endif()
