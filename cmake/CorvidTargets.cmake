# What every target of the project has in common.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

include(GNUInstallDirs)
include(GenerateExportHeader)

# The libraries for applications, each after those that it needs.
set(CORVID_LIBRARIES Corvid Corvid_XMLUtils Corvid_XMLBuilder Corvid_Editing Corvid_Inspection)

# Shared unless BUILD_SHARED_LIBS says otherwise; a project around this one keeps its own default.
if(NOT DEFINED BUILD_SHARED_LIBS)
  set(BUILD_SHARED_LIBS ON)
endif()
if(NOT BUILD_SHARED_LIBS)
  foreach(library IN LISTS CORVID_LIBRARIES)
    string(TOUPPER ${library} upper)
    add_compile_definitions(${upper}_STATIC_DEFINE)
  endforeach()
endif()

# A library with hidden visibility whose sources come from its folders' target_sources.
#   corvid_add_library(<target> <export name>)
# makes <target> and the alias Corvid::<export name>; the export macro's header is
# <binary dir of the project>/generated/<target>/Export.h.
function(corvid_add_library target export_name)
  add_library(${target})
  add_library(Corvid::${export_name} ALIAS ${target})
  string(TOUPPER ${target} upper)
  generate_export_header(${target}
    EXPORT_MACRO_NAME ${upper}_EXPORT
    EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/generated/${target}/Export.h)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/corvid>)
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION}
    # Before 1.0 every minor version may change the interface (docs/compatibility.md).
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    EXPORT_NAME ${export_name})
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} INTERFACE ${upper}_STATIC_DEFINE)
  endif()
endfunction()

# Says that the static library <target> is a part of several of the libraries. Applications that link
# those as static libraries need it; for shared libraries it is not installed.
#   corvid_part(<target> <export name>)
function(corvid_part target export_name)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${export_name})
  set_property(GLOBAL APPEND PROPERTY CORVID_PARTS ${target})
endfunction()

# Lets no source of <target> include Xerces-C or XQilla, wherever they are installed: every header of
# theirs includes one that the folder has an error in place of.
function(corvid_without_xerces target)
  target_include_directories(${target} BEFORE PRIVATE ${PROJECT_SOURCE_DIR}/cmake/without-xerces)
endfunction()

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  # Names of source files in messages are relative to the project.
  add_compile_options(
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
    -ffile-prefix-map=${PROJECT_BINARY_DIR}/=build/
    # No program puts a function of its own in the place of one of the libraries': what they call of
    # their own can be inlined, and needs no look-up of its name.
    -fno-semantic-interposition)
  if(UNIX AND NOT APPLE)
    add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:LINKER:-Bsymbolic-functions>)
  endif()
endif()

include(cmake/CorvidHardening.cmake)

# The rest serves those who work on Corvid; inside another project that one decides.
if(PROJECT_IS_TOP_LEVEL)
  include(cmake/CorvidDevelopment.cmake)
endif()
