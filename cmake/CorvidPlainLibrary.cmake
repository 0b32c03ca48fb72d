# Finds a library that brings no CMake package of its own, in the find module for it:
#   corvid_find_plain_library(<name> <library> <header>)
# makes the target <name>::<name>.
macro(corvid_find_plain_library name library header)
  find_path(${name}_INCLUDE_DIR ${header})
  find_library(${name}_LIBRARY ${library})
  mark_as_advanced(${name}_INCLUDE_DIR ${name}_LIBRARY)

  include(FindPackageHandleStandardArgs)
  find_package_handle_standard_args(${name} REQUIRED_VARS ${name}_LIBRARY ${name}_INCLUDE_DIR)

  if(${name}_FOUND AND NOT TARGET ${name}::${name})
    add_library(${name}::${name} UNKNOWN IMPORTED)
    set_target_properties(${name}::${name} PROPERTIES
      IMPORTED_LOCATION "${${name}_LIBRARY}"
      INTERFACE_INCLUDE_DIRECTORIES "${${name}_INCLUDE_DIR}")
  endif()
endmacro()
