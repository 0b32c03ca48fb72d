# What doxygen needs to make pages of the headers that applications include.

set(corvid_doxygen_input ${CORVID_PUBLIC_HEADERS})
list(TRANSFORM corvid_doxygen_input PREPEND ${PROJECT_SOURCE_DIR}/)
list(APPEND corvid_doxygen_input ${PROJECT_BINARY_DIR}/generated/Corvid/Version.h)
list(FILTER corvid_doxygen_input INCLUDE REGEX "\\.h$")
list(JOIN corvid_doxygen_input " " corvid_doxygen_input)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
