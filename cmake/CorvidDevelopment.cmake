# Warnings, sanitizers and what makes builds quick.

option(CORVID_STRICT "Warnings are errors" OFF)
option(CORVID_FUZZ_SEARCH "Build for a search with clang's libFuzzer" OFF)
set(CORVID_SANITIZE "" CACHE STRING "Sanitizers to build with, e.g. address,undefined")

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
  if(CORVID_STRICT)
    add_compile_options(-Werror)
  endif()
  if(CORVID_FUZZ_SEARCH)
    # What the search is led by; only the targets get libFuzzer's main().
    add_compile_options(-fsanitize=fuzzer-no-link)
  endif()
  if(CORVID_SANITIZE)
    add_compile_options(-fsanitize=${CORVID_SANITIZE} -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${CORVID_SANITIZE})
    # GCC mistakes what the sanitizers insert for uses of uninitialised memory.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  endif()
endif()

# Whether the C library is glibc, whose allocator reports what it holds and can be replaced.
include(CheckCXXSymbolExists)
check_cxx_symbol_exists(mallinfo2 malloc.h CORVID_HAS_GLIBC_MALLOC)

find_program(CORVID_CCACHE ccache)
mark_as_advanced(CORVID_CCACHE)
if(CORVID_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CORVID_CCACHE})
endif()

# A faster linker, where there is one. GCC's link-time optimisation needs the linker that it has
# a plug-in for.
if(NOT CMAKE_INTERPROCEDURAL_OPTIMIZATION)
  find_program(CORVID_LINKER NAMES ld.mold ld.lld)
  mark_as_advanced(CORVID_LINKER)
  if(CORVID_LINKER MATCHES "ld\\.(mold|lld)$")
    set(corvid_linker_flag -fuse-ld=${CMAKE_MATCH_1})
    include(CheckLinkerFlag)
    check_linker_flag(CXX ${corvid_linker_flag} CORVID_LINKER_WORKS)
    if(CORVID_LINKER_WORKS)
      add_link_options(${corvid_linker_flag})
    endif()
  endif()
endif()
