#include "XMLBuilder/schema/PreparedSchemas.h"

// Two megabytes, which compilers would take long to read as an array.
// clang-format off
asm(".section .rodata\n"
    ".hidden corvidPreparedSchemas\n"
    ".globl corvidPreparedSchemas\n"
    ".hidden corvidPreparedSchemasEnd\n"
    ".globl corvidPreparedSchemasEnd\n"
    ".balign 16\n"
    "corvidPreparedSchemas:\n"
    ".incbin \"" CORVID_PREPARED_SCHEMAS "\"\n"
    "corvidPreparedSchemasEnd:\n"
    ".byte 0\n"
    ".previous\n");
// clang-format on

extern "C" {
extern const unsigned char corvidPreparedSchemas[];
extern const unsigned char corvidPreparedSchemasEnd[];
}

namespace Corvid::XMLBuilder {

PreparedSchemas preparedSchemas() noexcept {
    return {corvidPreparedSchemas,
            static_cast<std::size_t>(corvidPreparedSchemasEnd - corvidPreparedSchemas)};
}

} // namespace Corvid::XMLBuilder
