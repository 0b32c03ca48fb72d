# What is installed: the libraries, the headers that their users include, the command, the
# documentation, and the CMake package Corvid, whose targets carry the names that the aliases of a
# build tree have.

include(CMakePackageConfigHelpers)

# Libraries stand beside each other; the command finds them from where it stands.
file(RELATIVE_PATH corvid_lib_from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
set(corvid_libraries
  Corvid Corvid_XMLUtils Corvid_XMLBuilder Corvid_Editing Corvid_Inspection)
foreach(target IN LISTS corvid_libraries)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(DIRECTORY ${PROJECT_BINARY_DIR}/generated/${target}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvid
    FILES_MATCHING PATTERN Export.h)
endforeach()
if(CORVID_BUILD_TOOLS)
  set_target_properties(corvid PROPERTIES INSTALL_RPATH "$ORIGIN/${corvid_lib_from_bin}")
  install(TARGETS corvid RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(TARGETS ${corvid_libraries} EXPORT CorvidTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

foreach(header IN LISTS CORVID_PUBLIC_HEADERS)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${header}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvid/${folder})
endforeach()

set(corvid_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Corvid)
install(EXPORT CorvidTargets NAMESPACE Corvid:: DESTINATION ${corvid_package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/CorvidConfig.cmake.in
  ${PROJECT_BINARY_DIR}/CorvidConfig.cmake INSTALL_DESTINATION ${corvid_package_dir})
# Before 1.0 every minor version may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/CorvidConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/CorvidConfig.cmake
    ${PROJECT_BINARY_DIR}/CorvidConfigVersion.cmake
  DESTINATION ${corvid_package_dir})

install(FILES README.md CHANGELOG.md LICENSE NOTICE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs FILES_MATCHING PATTERN *.md)
