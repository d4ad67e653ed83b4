# What makes a bug in the handling of a stranger's calendar harder to exploit. The compiler is asked
# which of it this machine has; tools/check-binaries --hardened checks the result.
#
# A packager's own flags win: what CMAKE_CXX_FLAGS or the linker's flags decide already is left
# alone, and QUORVEL_HARDENING=OFF leaves everything to them.

option(QUORVEL_HARDENING "Build with the compiler's and the linker's protections" ON)
if(NOT QUORVEL_HARDENING)
  return()
endif()

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CheckPIESupported)

check_pie_supported(OUTPUT_VARIABLE pie_problem LANGUAGES CXX)
if(NOT CMAKE_CXX_LINK_PIE_SUPPORTED)
  message(WARNING "Programs will not be position-independent: ${pie_problem}")
endif()

string(TOUPPER "${CMAKE_BUILD_TYPE}" build_type)
set(chosen_flags "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${build_type}}")
set(chosen_link_flags "${chosen_flags} ${CMAKE_EXE_LINKER_FLAGS} ${CMAKE_SHARED_LINKER_FLAGS}")

# usage: quorvel_protect_code(FLAG DECIDED): DECIDED matches flags that decide the same.
function(quorvel_protect_code flag decided)
  if(chosen_flags MATCHES "${decided}")
    return()
  endif()
  string(MAKE_C_IDENTIFIER "QUORVEL_HAS_${flag}" result)
  set(CMAKE_REQUIRED_FLAGS -Werror) # a flag without effect here is a warning
  check_cxx_compiler_flag(${flag} ${result})
  if(${result})
    add_compile_options(${flag})
  endif()
endfunction()

# usage: quorvel_protect_link(KEYWORD DECIDED): for the linker's option -z.
function(quorvel_protect_link keyword decided)
  if(chosen_link_flags MATCHES "-z,? *(${decided})")
    return()
  endif()
  string(MAKE_C_IDENTIFIER "QUORVEL_HAS_LINK_${keyword}" result)
  check_linker_flag(CXX LINKER:-z,${keyword} ${result})
  if(${result})
    add_link_options(LINKER:-z,${keyword})
  endif()
endfunction()

# Nothing can be written into the loader's tables once the program runs, nor executed on the stack.
quorvel_protect_link(relro "relro|norelro")
quorvel_protect_link(now "now|lazy")
quorvel_protect_link(noexecstack "noexecstack|execstack")

# The sanitizers find more than these do, and a debugger is no stranger.
if(QUORVEL_SANITIZE OR build_type STREQUAL "DEBUG")
  return()
endif()

quorvel_protect_code(-fstack-protector-strong "-f(no-)?stack-protector")
quorvel_protect_code(-fstack-clash-protection "-f(no-)?stack-clash-protection")
quorvel_protect_code(-fcf-protection=full "-fcf-protection")             # x86
quorvel_protect_code(-mbranch-protection=standard "-mbranch-protection") # ARM

# The checked functions are inlined ones, which only an optimising compiler makes.
if(NOT chosen_flags MATCHES "_FORTIFY_SOURCE")
  set(CMAKE_REQUIRED_FLAGS "${CMAKE_CXX_FLAGS_${build_type}}")
  check_cxx_source_compiles("
    #ifndef __OPTIMIZE__
    #error
    #endif
    int main() {}" QUORVEL_OPTIMISES)
  unset(CMAKE_REQUIRED_FLAGS)
  if(QUORVEL_OPTIMISES)
    # Some compilers define it by themselves, and a second definition is a warning.
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  endif()
endif()
