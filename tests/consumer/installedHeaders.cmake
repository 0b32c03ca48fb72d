# Run by CTest with cmake -P after installedPackage.cmake, whose installation it uses.
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${WORK_DIR}/headers)
build_against_installed(${CMAKE_CURRENT_LIST_DIR}/headers ${WORK_DIR}/headers
  -D INCLUDE_DIR=${WORK_DIR}/moved/${INCLUDE_DIR})
run(log ${WORK_DIR}/headers/everyClass)
