# What the loader has to do at each start. Our modules and libraries export only the names of their
# version scripts (quorvel_module, quorvel_public_library).

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

# No program replaces a function of ours by one of the same name, so that these are called directly,
# and may be inlined, in position-independent code too.
check_cxx_compiler_flag(-fno-semantic-interposition QUORVEL_HAS_DIRECT_CALLS)
if(QUORVEL_HAS_DIRECT_CALLS AND NOT QUORVEL_SANITIZE)
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-fno-semantic-interposition>)
endif()

# Shorter chains in the tables of symbols, and no library that nothing refers to.
foreach(option -O1 --as-needed)
  string(MAKE_C_IDENTIFIER "QUORVEL_HAS_LINK_${option}" result)
  check_linker_flag(CXX LINKER:${option} ${result})
  if(${result})
    add_link_options(LINKER:${option})
  endif()
endforeach()
