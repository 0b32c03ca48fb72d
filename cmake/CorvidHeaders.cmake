# CORVID_PUBLIC_HEADERS: what users of the libraries may include, relative to the project's root.
# A header under host/ is public by being there, unless it belongs to a program that only the build
# runs; the folders below XMLBuilder/ are its own affair.
file(GLOB_RECURSE CORVID_PUBLIC_HEADERS CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
  ${PROJECT_SOURCE_DIR}/host/*.h ${PROJECT_SOURCE_DIR}/host/*.def)
list(FILTER CORVID_PUBLIC_HEADERS EXCLUDE REGEX "/compile/")
file(GLOB corvid_headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
  ${PROJECT_SOURCE_DIR}/XMLBuilder/*.h)
list(APPEND CORVID_PUBLIC_HEADERS ${corvid_headers})
