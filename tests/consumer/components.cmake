# Run by CTest with cmake -P after installedPackage.cmake, whose installation it uses: each library is
# found and used alone, and those that do without Xerces-C also where that is not installed.
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

set(work ${WORK_DIR}/components)
file(REMOVE_RECURSE ${work})
set(projects ${CMAKE_CURRENT_LIST_DIR}/components)

# use_components(<name> <components> [<further targets that come with them>...])
function(use_components name components)
  list(JOIN components "," wanted)
  list(JOIN ARGN "," others)
  build_against_installed(${projects} ${work}/${name}
    -D COMPONENTS=${wanted} -D OTHERS=${others} ${cmake_arguments})
  foreach(component IN LISTS components)
    run(version ${work}/${name}/use${component})
    if(NOT version STREQUAL "${VERSION}\n")
      message(FATAL_ERROR "use${component} printed '${version}', expected ${VERSION}")
    endif()
  endforeach()
endfunction()

set(cmake_arguments -DCMAKE_DISABLE_FIND_PACKAGE_XercesC=ON)
use_components(without-xerces "Corvid;Editing;Inspection")
use_components(editing "Editing" Corvid)
set(cmake_arguments)
use_components(with-xerces "XMLBuilder" Corvid XMLUtils)
use_components(all "Corvid;XMLUtils;XMLBuilder;Editing;Inspection")

# refuse_component(<name> <pattern of the error> [<argument of CMake>...])
function(refuse_component name pattern)
  file(REMOVE_RECURSE ${work}/refused)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${projects} -B ${work}/refused -G Ninja
      -DCMAKE_PREFIX_PATH=${WORK_DIR}/moved -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
      -DCOMPONENTS=${name} ${ARGN}
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE errors)
  if(result EQUAL 0 OR NOT errors MATCHES "${pattern}")
    message(FATAL_ERROR "${name} is not refused for ${pattern}:\n${errors}")
  endif()
endfunction()

refuse_component(XMLUtils "XercesC" -DCMAKE_DISABLE_FIND_PACKAGE_XercesC=ON)
refuse_component(Nonsense "no component.*Nonsense.*Inspection")
