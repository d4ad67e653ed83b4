# The shared object needs the C++ runtime and our own platform library alone, and exports one symbol.
# cmake -D BUNDLE=file -D READELF=program -D NM=program -P check_bundle.cmake

execute_process(COMMAND ${READELF} -d ${BUNDLE} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "Shared library: \\[[^]]*\\]" needed "${dynamic}")
if(NOT "${needed}" MATCHES "libquorvel_platform")
  message(FATAL_ERROR "The bundle does not use the platform library: ${needed}")
endif()
foreach(entry IN LISTS needed)
  string(REGEX REPLACE ".*\\[(.*)\\]" "\\1" library "${entry}")
  # The sanitizers' runtimes are there in a sanitizing build only.
  if(NOT library MATCHES "^(libquorvel_platform|libstdc\\+\\+|libgcc_s|libm|libc|libasan|libubsan|ld-linux.*)\\.so")
    message(FATAL_ERROR "The bundle needs ${library}")
  endif()
endforeach()

execute_process(COMMAND ${NM} -D --defined-only ${BUNDLE} OUTPUT_VARIABLE symbols
  COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${symbols}" symbols)
if(NOT symbols MATCHES "^[0-9a-f]+ T quorvelWidgetBundle$")
  message(FATAL_ERROR "The bundle exports:\n${symbols}")
endif()
