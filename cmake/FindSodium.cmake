# Finds libsodium, which brings no CMake package of its own, and makes the target Sodium::Sodium.

find_path(Sodium_INCLUDE_DIR sodium/crypto_shorthash.h)
find_library(Sodium_LIBRARY sodium)
mark_as_advanced(Sodium_INCLUDE_DIR Sodium_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Sodium REQUIRED_VARS Sodium_LIBRARY Sodium_INCLUDE_DIR)

if(Sodium_FOUND AND NOT TARGET Sodium::Sodium)
  add_library(Sodium::Sodium UNKNOWN IMPORTED)
  set_target_properties(Sodium::Sodium PROPERTIES
    IMPORTED_LOCATION "${Sodium_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Sodium_INCLUDE_DIR}")
endif()
