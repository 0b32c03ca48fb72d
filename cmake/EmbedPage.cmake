# Writes a source file with the bytes of a page:
#   cmake -DPAGE=<file> -DSOURCE=<file to write> -P EmbedPage.cmake
file(READ ${PAGE} bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "(................................................................................)" "\\1\n" bytes "${bytes}")
file(WRITE ${SOURCE} "#include \"tools/corvid/page/PageText.h\"

namespace Corvid::Tool {

const unsigned char pageText[] = {
${bytes}};
const std::size_t pageTextSize = sizeof pageText;

} // namespace Corvid::Tool
")
