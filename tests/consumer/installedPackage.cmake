# Run by CTest with cmake -P; says where it stops by failing there.

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGV " " command)
    message(FATAL_ERROR "${command}\nexit code ${result}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/installed)
# The package is to work wherever it is moved to.
file(RENAME ${WORK_DIR}/installed ${WORK_DIR}/moved)

set(flags)
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
run(${CMAKE_COMMAND} -S ${EXAMPLES_DIR} -B ${WORK_DIR}/build -G Ninja
  -D CMAKE_PREFIX_PATH=${WORK_DIR}/moved
  -D CMAKE_CXX_COMPILER=${CXX_COMPILER}
  -D CMAKE_CXX_FLAGS=${flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)

run(${WORK_DIR}/build/printMetadata ${EXAMPLES_DIR}/sample.mxf)
if(NOT output MATCHES "Corvid")
  message(FATAL_ERROR "the example printed:\n${output}")
endif()
