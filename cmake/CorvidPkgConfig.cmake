# A file for pkg-config for each library:
#   corvid_install_pkg_config(<target> <description>
#     [REQUIRES <modules>]          what applications use together with it
#     [STATIC_REQUIRES <modules>]   what else a static library needs, and what of it
#     [STATIC_LIBRARIES <names>]    has no module
# The file's name is that of the target in lower case, with a hyphen.
function(corvid_install_pkg_config library description)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "REQUIRES;STATIC_REQUIRES;STATIC_LIBRARIES")
  string(TOLOWER ${library} module)
  string(REPLACE "_" "-" module ${module})
  file(RELATIVE_PATH prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" prefix "${prefix}")
  set(static_flags "")
  if(BUILD_SHARED_LIBS)
    set(arg_STATIC_REQUIRES "")
    set(arg_STATIC_LIBRARIES "")
  else()
    string(TOUPPER ${library} upper)
    set(static_flags " -D${upper}_STATIC_DEFINE")
  endif()
  list(JOIN arg_REQUIRES " " requires)
  list(JOIN arg_STATIC_REQUIRES " " static_requires)
  list(TRANSFORM arg_STATIC_LIBRARIES PREPEND -l)
  list(JOIN arg_STATIC_LIBRARIES " " static_libraries)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/corvid.pc.in ${PROJECT_BINARY_DIR}/${module}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${module}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endfunction()

set(xqilla)
if(CORVID_WITH_XQILLA)
  set(xqilla xqilla)
endif()
corvid_install_pkg_config(Corvid "Header metadata of MXF files: read, changed, written"
  STATIC_REQUIRES libsodium)
corvid_install_pkg_config(Corvid_XMLUtils "Xerces-C as Corvid uses it"
  REQUIRES corvid xerces-c
  STATIC_LIBRARIES corvid_markup ${xqilla})
corvid_install_pkg_config(Corvid_XMLBuilder "Header metadata of MXF files as XML, and back"
  REQUIRES corvid-xmlutils
  STATIC_LIBRARIES Corvid_XMLText corvid_markup ${xqilla} boost_thread)
corvid_install_pkg_config(Corvid_Editing "Documents of header metadata: read strictly, compared, applied to clips"
  REQUIRES corvid
  STATIC_REQUIRES expat
  STATIC_LIBRARIES Corvid_XMLStream Corvid_XMLText corvid_markup)
corvid_install_pkg_config(Corvid_Inspection "What an MXF file is and holds"
  REQUIRES corvid)
