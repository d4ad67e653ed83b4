# How every room of the house is built: the same language, the same warnings.

function(quorvel_compile_options target)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${QUORVEL_WARNINGS_AS_ERRORS}>:-Werror>)
  # GCC takes what a checked std::optional or std::variant holds for uninitialized: newer versions
  # everywhere, version 12 with 32 bits.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND
      (CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13 OR CMAKE_SIZEOF_VOID_P EQUAL 4))
    target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
  endif()
  if(QUORVEL_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${QUORVEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${QUORVEL_SANITIZE})
  endif()
  if(QUORVEL_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# quorvel_room(NAME SOURCES file... [LINK library...] [SHARED])
# LINK libraries are part of the room's interface; a wrapped third-party library goes to
# LINK_PRIVATE, so that its headers reach nobody else.
function(quorvel_room name)
  cmake_parse_arguments(room "SHARED" "" "SOURCES;LINK;LINK_PRIVATE" ${ARGN})
  if(room_SHARED)
    add_library(${name} SHARED ${room_SOURCES})
  else()
    add_library(${name} STATIC ${room_SOURCES})
  endif()
  quorvel_compile_options(${name})
  target_link_libraries(${name} PUBLIC ${room_LINK} PRIVATE ${room_LINK_PRIVATE})
endfunction()

# quorvel_module(NAME SOURCES file... EXPORTS file LINK library...): what a program loads when it needs
# it, beside the programs after a build. It exports the names of the file and nothing else.
function(quorvel_module name)
  cmake_parse_arguments(module "" "EXPORTS" "SOURCES;LINK" ${ARGN})
  set(exports ${CMAKE_CURRENT_SOURCE_DIR}/${module_EXPORTS})
  add_library(${name} MODULE ${module_SOURCES})
  quorvel_compile_options(${name})
  target_link_libraries(${name} PRIVATE ${module_LINK})
  target_link_options(${name} PRIVATE LINKER:--version-script=${exports})
  if(NOT QUORVEL_SANITIZE) # a sanitizer's own symbols come from the program
    target_link_options(${name} PRIVATE LINKER:--no-undefined)
  endif()
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}
    BUILD_WITH_INSTALL_RPATH ON # without one: the program has loaded our own libraries already
    LINK_DEPENDS ${exports})
  install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/quorvel)
endfunction()

# quorvel_test(NAME SOURCES file... LINK library... [SLOW]): one test program of a room. It gets the
# label `unit` unless it is SLOW, so that `ctest -L unit` takes less than a minute. The target
# `unit_tests` builds all that have it.
function(quorvel_test name)
  cmake_parse_arguments(test "SLOW" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${test_SOURCES})
  quorvel_compile_options(${name})
  # What a test says is compiled twice as fast so, and what it tests is optimised as ever.
  target_compile_options(${name} PRIVATE $<$<CONFIG:Debug>:-O0>)
  target_link_libraries(${name} PRIVATE ${test_LINK} GTest::gmock GTest::gtest_main)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  if(NOT test_SLOW)
    set_property(TEST ${name} APPEND PROPERTY LABELS unit)
    if(NOT TARGET unit_tests)
      add_custom_target(unit_tests)
    endif()
    add_dependencies(unit_tests ${name})
  endif()
endfunction()

# quorvel_uses_threads(TEST...): tests that the thread sanitizer watches as well, each built by the
# target of its name. The target `thread_tests` builds all of them.
function(quorvel_uses_threads)
  if(NOT TARGET thread_tests)
    add_custom_target(thread_tests)
  endif()
  foreach(name ${ARGN})
    set_property(TEST ${name} APPEND PROPERTY LABELS threads)
    add_dependencies(thread_tests ${name})
  endforeach()
endfunction()
