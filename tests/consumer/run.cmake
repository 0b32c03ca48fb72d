# run(<variable> <command>...): what the command prints to standard output goes to the variable; a
# command that fails ends the test.
function(run variable)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nexit code ${result}\n${output}\n${errors}")
  endif()
  set(${variable} "${output}" PARENT_SCOPE)
endfunction()

# build_against_installed(<source folder> <build folder> [<CMake argument>...])
function(build_against_installed source build)
  set(flags)
  if(SANITIZE)
    set(flags "-fsanitize=${SANITIZE}")
  endif()
  run(log ${CMAKE_COMMAND} -S ${source} -B ${build} -G Ninja
    -D CMAKE_PREFIX_PATH=${WORK_DIR}/moved
    -D CMAKE_CXX_COMPILER=${CXX_COMPILER}
    -D CMAKE_CXX_FLAGS=${flags} ${ARGN})
  run(log ${CMAKE_COMMAND} --build ${build})
endfunction()

# expect_sample(<who> <output>): header metadata of the sample is shown.
function(expect_sample what output)
  foreach(part "<s377m:Preface" "</s377m:Preface>" "Test picture and tone")
    string(FIND "${output}" "${part}" place)
    if(place EQUAL -1)
      message(FATAL_ERROR "${what} printed no '${part}':\n${output}")
    endif()
  endforeach()
endfunction()
