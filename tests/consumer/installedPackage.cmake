# Run by CTest with cmake -P; says where it stops by failing there.

include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

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

build_against_installed(${EXAMPLES_DIR} ${WORK_DIR}/build)

run(xml ${WORK_DIR}/build/printMetadata ${EXAMPLES_DIR}/sample.mxf)
expect_sample("the example" "${xml}")
if(COMMAND_NAME)
  run(xml ${WORK_DIR}/moved/bin/${COMMAND_NAME} to-xml ${EXAMPLES_DIR}/sample.mxf)
  expect_sample("the installed command" "${xml}")
endif()
