# Libraries that programs of others link: their version, what they export, and how these programs find
# them.

# The number is that of the interface between a host and a bundle, so that one number decides whether
# a host, a library and a bundle fit together.
file(STRINGS ${PROJECT_SOURCE_DIR}/platform/widget_bundle.h interface_version
  REGEX "widgetBundleInterfaceVersion = [0-9]+")
string(REGEX MATCH "= ([0-9]+)" interface_version "${interface_version}")
set(QUORVEL_INTERFACE_VERSION ${CMAKE_MATCH_1})

set(QUORVEL_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/quorvel)
set(QUORVEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quorvel)

# quorvel_public_library(TARGET EXPORTS file NAME name): installs a shared library with its exports
# limited to those of the file. NAME is that of the imported target, Quorvel::<NAME>.
function(quorvel_public_library target)
  cmake_parse_arguments(library "" "EXPORTS;NAME" "" ${ARGN})
  set(exports ${CMAKE_CURRENT_SOURCE_DIR}/${library_EXPORTS})
  target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
  set_target_properties(${target} PROPERTIES
    SOVERSION ${QUORVEL_INTERFACE_VERSION}
    LINK_DEPENDS ${exports}
    EXPORT_NAME ${library_NAME})
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${QUORVEL_HEADER_DIR}>)
  install(TARGETS ${target} EXPORT Quorvel LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# quorvel_public_headers(header...): installs headers under their paths in this project, by which they
# include each other.
function(quorvel_public_headers)
  foreach(header ${ARGN})
    cmake_path(ABSOLUTE_PATH header NORMALIZE OUTPUT_VARIABLE path)
    cmake_path(RELATIVE_PATH path BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE name)
    cmake_path(GET name PARENT_PATH folder)
    install(FILES ${path} DESTINATION ${QUORVEL_HEADER_DIR}/${folder})
  endforeach()
endfunction()

# quorvel_pkg_config(NAME name DESCRIPTION text LIBRARY library [REQUIRES name])
function(quorvel_pkg_config)
  cmake_parse_arguments(package "" "NAME;DESCRIPTION;LIBRARY;REQUIRES" "" ${ARGN})
  set(file ${PROJECT_BINARY_DIR}/pkgconfig/${package_NAME}.pc)
  # Seen from the file, so that the installed tree can be moved.
  file(RELATIVE_PATH prefix_from_file
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${file} @ONLY)
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

# To be called once, after all of these libraries: the package that find_package(Quorvel) finds.
function(quorvel_install_cmake_package)
  include(CMakePackageConfigHelpers)
  set(QUORVEL_BUNDLE_DIR ${CMAKE_INSTALL_LIBDIR}/quorvel/Quorvel.bundle)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QuorvelConfig.cmake.in
    ${PROJECT_BINARY_DIR}/QuorvelConfig.cmake
    INSTALL_DESTINATION ${QUORVEL_CMAKE_DIR}
    PATH_VARS QUORVEL_BUNDLE_DIR)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuorvelConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/QuorvelConfig.cmake ${PROJECT_BINARY_DIR}/QuorvelConfigVersion.cmake
    DESTINATION ${QUORVEL_CMAKE_DIR})
  install(EXPORT Quorvel NAMESPACE Quorvel:: FILE QuorvelTargets.cmake DESTINATION ${QUORVEL_CMAKE_DIR})
endfunction()
