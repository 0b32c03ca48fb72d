# What is installed: the libraries, the headers that their users include, the command, the
# documentation, the CMake package Corvid, whose targets carry the names that the aliases of a build
# tree have, and a pkg-config file for each library. The components (Command, Runtime, Development,
# Documentation) are the packages that packaging/ makes.

include(CMakePackageConfigHelpers)
include(${CMAKE_CURRENT_LIST_DIR}/CorvidPkgConfig.cmake)

# What only the command loads is in a folder of its own, for it is no library for others.
set(corvid_module_dir ${CMAKE_INSTALL_LIBDIR}/corvid)
set(corvid_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Corvid)

# Files find each other from where they are, wherever the installation is moved to. In a folder that
# the loader searches anyway, libraries need no path to it, which would put that folder first.
file(RELATIVE_PATH corvid_lib_from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
set(corvid_command_rpath "$ORIGIN/${corvid_lib_from_bin}/corvid")
if(NOT CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
  set_target_properties(${CORVID_LIBRARIES} PROPERTIES INSTALL_RPATH "$ORIGIN")
  list(APPEND corvid_command_rpath "$ORIGIN/${corvid_lib_from_bin}")
  set(corvid_module_rpath "$ORIGIN/..")
endif()

if(CORVID_BUILD_TOOLS)
  install(TARGETS corvid RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Command)
  if(BUILD_SHARED_LIBS)
    set_target_properties(corvid PROPERTIES INSTALL_RPATH "${corvid_command_rpath}")
    set_target_properties(corvid_xml_module PROPERTIES INSTALL_RPATH "${corvid_module_rpath}")
    install(TARGETS corvid_xml_module LIBRARY DESTINATION ${corvid_module_dir} COMPONENT Command)
  endif()
endif()

# A set of targets for each library, so that an application looks for no more than it uses.
function(corvid_install_targets export)
  install(TARGETS ${ARGN} EXPORT ${export}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
  install(EXPORT ${export} NAMESPACE Corvid:: DESTINATION ${corvid_package_dir}
    COMPONENT Development)
endfunction()
foreach(target IN LISTS CORVID_LIBRARIES)
  get_target_property(name ${target} EXPORT_NAME)
  corvid_install_targets(Corvid-${name} ${target})
  install(FILES ${PROJECT_BINARY_DIR}/generated/${target}/Export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvid/${target} COMPONENT Development)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/generated/Corvid/Version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvid/Corvid COMPONENT Development)

if(NOT BUILD_SHARED_LIBS)
  get_property(parts GLOBAL PROPERTY CORVID_PARTS)
  corvid_install_targets(Corvid-Parts ${parts})
  install(FILES
      cmake/CorvidPlainLibrary.cmake
      cmake/FindSodium.cmake
      cmake/FindXQilla.cmake
    DESTINATION ${corvid_package_dir} COMPONENT Development)
endif()

foreach(header IN LISTS CORVID_PUBLIC_HEADERS)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${header}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvid/${folder} COMPONENT Development)
endforeach()

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/CorvidConfig.cmake.in
  ${PROJECT_BINARY_DIR}/CorvidConfig.cmake INSTALL_DESTINATION ${corvid_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/CorvidConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/CorvidConfig.cmake
    ${PROJECT_BINARY_DIR}/CorvidConfigVersion.cmake
  DESTINATION ${corvid_package_dir} COMPONENT Development)

install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md LICENSE NOTICE
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Documentation)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT Documentation
  FILES_MATCHING PATTERN *.md PATTERN *.png)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Documentation)
