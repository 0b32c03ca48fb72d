# Run by CTest with cmake -P; says where it stops by failing there.

include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${WORK_DIR})
run(log ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/installed)
# The package is to work wherever it is moved to.
file(RENAME ${WORK_DIR}/installed ${WORK_DIR}/moved)

build_against_installed(${EXAMPLES_DIR} ${WORK_DIR}/build)

run(xml ${WORK_DIR}/build/printMetadata ${EXAMPLES_DIR}/sample.mxf)
expect_sample("the example" "${xml}")
if(EXAMPLES_TESTS)
  run(log ${CMAKE_COMMAND} -E env CORVID_EXAMPLES=${WORK_DIR}/build ${EXAMPLES_TESTS})
endif()
if(COMMAND_NAME)
  run(xml ${WORK_DIR}/moved/bin/${COMMAND_NAME} to-xml ${EXAMPLES_DIR}/sample.mxf)
  expect_sample("the installed command" "${xml}")
  # With what it loads for that.
  run(xml ${WORK_DIR}/moved/bin/${COMMAND_NAME} to-xml --validate ${EXAMPLES_DIR}/sample.mxf)
  expect_sample("the installed command" "${xml}")
  foreach(file corvid/corvid-metadata.schema.json man/man1/corvid-to-xml.1
      bash-completion/completions/corvid fish/vendor_completions.d/corvid.fish
      zsh/vendor-completions/_corvid)
    if(NOT EXISTS ${WORK_DIR}/moved/share/${file})
      message(FATAL_ERROR "share/${file} is not installed")
    endif()
  endforeach()
endif()
if(NOT EXISTS ${WORK_DIR}/moved/${DOCUMENTATION_DIR}/README.md)
  message(FATAL_ERROR "the documentation is not installed")
endif()
