# What distributions ask of programs that read what strangers send; a packager whose flags say the
# same loses nothing by it.

option(CORVID_HARDEN "Checked copies and formats, stack protector, read-only relocations, PIE" ON)

if(CORVID_HARDEN AND CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  include(CheckPIESupported)
  check_pie_supported()
  add_compile_options(-fstack-protector-strong -Wformat -Werror=format-security)
  # The checked functions need optimisation, and hide their callers from the sanitizers.
  if(NOT CORVID_SANITIZE)
    add_compile_options(-U_FORTIFY_SOURCE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  endif()
  if(UNIX AND NOT APPLE)
    add_link_options(LINKER:-z,relro LINKER:-z,now)
  endif()
endif()
