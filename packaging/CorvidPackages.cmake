# The Debian packages, one for each component that cmake/CorvidInstall.cmake installs. The preset
# packages builds what belongs into them; packaging/README.md says how they are made and tested.

set(CORVID_MAINTAINER "Corvid developers <corvid@example.org>" CACHE STRING
  "Who answers for the packages: name and address")
mark_as_advanced(CORVID_MAINTAINER)

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${CORVID_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # else it is put in front of that of each package
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Command Runtime Development Documentation)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE corvid)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Programs that others build run with each later patch version (docs/compatibility.md).
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# The libraries of a package that is being made are not installed where dpkg-shlibdeps looks.
foreach(library IN LISTS CORVID_LIBRARIES)
  get_target_property(folder ${library} BINARY_DIR)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${folder})
endforeach()

# corvid_package(<component> <name> <section> SUMMARY <text> DESCRIPTION <text>)
macro(corvid_package component name section)
  cmake_parse_arguments(arg "" "SUMMARY;DESCRIPTION" "" ${ARGN})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${arg_SUMMARY}\n${arg_DESCRIPTION}")
  install(FILES ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz
      ${PROJECT_SOURCE_DIR}/packaging/debian/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

corvid_package(Command corvid video
  SUMMARY "header metadata of MXF files as XML, and back"
  DESCRIPTION "The command corvid shows what is in an MXF file (SMPTE ST 377-1), writes its
header metadata as XML or JSON, reads edited documents back into the file,
compares clips and checks them. What it does not know is kept byte for byte.")
set(CPACK_DEBIAN_COMMAND_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_COMMAND_DEPENDS Runtime)
# Loaded when a clip is on a server (tools/corvid/remote).
set(CPACK_DEBIAN_COMMAND_PACKAGE_RECOMMENDS "libcurl4 | libcurl3-gnutls")

set(soversion ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
corvid_package(Runtime libcorvid${soversion} libs
  SUMMARY "header metadata of MXF files - shared libraries"
  DESCRIPTION "Corvid reads, changes and writes the header metadata of MXF files (SMPTE ST
377-1), as objects and as XML documents.
.
This package has the shared libraries.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# The folder has no postinst and postrm: CPack writes scripts that call ldconfig unless it is given
# others, and the triggers do the same.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/packaging/debian/triggers
  ${PROJECT_SOURCE_DIR}/packaging/debian/postinst
  ${PROJECT_SOURCE_DIR}/packaging/debian/postrm)

corvid_package(Development libcorvid-dev libdevel
  SUMMARY "header metadata of MXF files - development files"
  DESCRIPTION "Corvid reads, changes and writes the header metadata of MXF files (SMPTE ST
377-1), as objects and as XML documents.
.
This package has the headers, and what CMake and pkg-config need.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS libxerces-c-dev)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)

corvid_package(Documentation corvid-doc doc
  SUMMARY "header metadata of MXF files - documentation"
  DESCRIPTION "A page for each verb of the command corvid, the form of the documents, limits
and warnings, and example programs that use the libraries.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)

set(CORVID_PACKAGE_VERSION ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
configure_file(packaging/debian/changelog.in ${PROJECT_BINARY_DIR}/packaging/changelog.Debian @ONLY)
execute_process(COMMAND gzip -9nkf ${PROJECT_BINARY_DIR}/packaging/changelog.Debian
  COMMAND_ERROR_IS_FATAL ANY)

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/compressManualPages.cmake)

include(CPack)
