# For programs that run on Linux systems with an older C library: clang with the C library and the
# standard library of an older Debian. What else is needed is in CORVID_DEPS, as static libraries.
#   CORVID_SYSROOT  that system
#   CORVID_DEPS     where the libraries of packaging/tarball.sh are installed

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CORVID_SYSROOT CORVID_DEPS)
set(CMAKE_SYSROOT ${CORVID_SYSROOT})
set(CMAKE_FIND_ROOT_PATH ${CORVID_DEPS} ${CORVID_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_FLAGS_INIT "-ffunction-sections -fdata-sections")
set(CMAKE_CXX_FLAGS_INIT "-ffunction-sections -fdata-sections")
set(CMAKE_EXE_LINKER_FLAGS_INIT
  "-fuse-ld=lld -static-libstdc++ -static-libgcc -Wl,--gc-sections -Wl,--as-needed -s")
