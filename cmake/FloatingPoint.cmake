# Numbers of the same precision on every machine. Without SSE2 a 32-bit x86 computes with more digits
# than a double holds, and what is rounded or cut off then depends on the compiler's choice of
# registers: a colour component of 26 is written as 25.
#
# Processors without SSE2 are older than any phone's shell. A packager who supports them sets
# QUORVEL_SSE2=OFF; flags that choose the unit win as well.

option(QUORVEL_SSE2 "On 32-bit x86, compute with SSE2" ON)
if(NOT QUORVEL_SSE2 OR CMAKE_CXX_FLAGS MATCHES "-mfpmath=")
  return()
endif()

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("
  #if !defined(__i386__) || defined(__SSE2_MATH__)
  #error
  #endif
  int main() {}" QUORVEL_COMPUTES_WITH_X87)
if(QUORVEL_COMPUTES_WITH_X87)
  check_cxx_compiler_flag("-msse2 -mfpmath=sse" QUORVEL_HAS_SSE2_MATH)
  if(QUORVEL_HAS_SSE2_MATH)
    add_compile_options(-msse2 -mfpmath=sse)
  endif()
endif()
