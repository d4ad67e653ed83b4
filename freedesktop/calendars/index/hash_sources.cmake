# cmake -DOUTPUT=header -DSOURCES="file;file..." -P hash_sources.cmake
# A header with one hash of all these files. It is written only where it is another one.
set(hashes "")
foreach(source IN LISTS SOURCES)
  file(SHA256 "${source}" hash)
  string(APPEND hashes "${hash}")
endforeach()
string(SHA256 hash "${hashes}")
file(CONFIGURE OUTPUT "${OUTPUT}" CONTENT "#define QUORVEL_CALENDAR_SOURCES \"${hash}\"\n")
