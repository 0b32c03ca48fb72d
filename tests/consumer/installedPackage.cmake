# Run by CTest with cmake -P; says where it stops by failing there.

# run(<variable> <command>...): what the command prints to standard output goes to the variable.
function(run variable)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nexit code ${result}\n${output}\n${errors}")
  endif()
  set(${variable} "${output}" PARENT_SCOPE)
endfunction()

# Both programs show the sample's header metadata.
function(expect_sample what output)
  foreach(part "<s377m:Preface" "</s377m:Preface>" "Test picture and tone")
    string(FIND "${output}" "${part}" place)
    if(place EQUAL -1)
      message(FATAL_ERROR "${what} printed no '${part}':\n${output}")
    endif()
  endforeach()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
run(log ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/installed)
# The package is to work wherever it is moved to.
file(RENAME ${WORK_DIR}/installed ${WORK_DIR}/moved)

set(flags)
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
run(log ${CMAKE_COMMAND} -S ${EXAMPLES_DIR} -B ${WORK_DIR}/build -G Ninja
  -D CMAKE_PREFIX_PATH=${WORK_DIR}/moved
  -D CMAKE_CXX_COMPILER=${CXX_COMPILER}
  -D CMAKE_CXX_FLAGS=${flags})
run(log ${CMAKE_COMMAND} --build ${WORK_DIR}/build)

run(xml ${WORK_DIR}/build/printMetadata ${EXAMPLES_DIR}/sample.mxf)
expect_sample("the example" "${xml}")
if(COMMAND_NAME)
  run(xml ${WORK_DIR}/moved/bin/${COMMAND_NAME} to-xml ${EXAMPLES_DIR}/sample.mxf)
  expect_sample("the installed command" "${xml}")
endif()
