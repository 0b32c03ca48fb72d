#include "tools/corvid/page/PageShell.h"

#include "tools/corvid/page/PageText.h"

#include <cassert>

namespace Corvid::Tool {

namespace {

/// Takes all before a mark off the front, and the mark.
std::string_view takeUpTo(std::string_view mark, std::string_view& text) {
    const std::size_t place = text.find(mark);
    assert(place != std::string_view::npos);
    const std::string_view front = text.substr(0, place);
    text.remove_prefix(place + mark.size());
    return front;
}

PageShell divided(std::string_view text) {
    PageShell shell;
    shell.beforeTitle = takeUpTo("@TITLE@", text);
    shell.beforeSummary = takeUpTo("@SUMMARY@", text);
    shell.beforeData = takeUpTo("@DATA@", text);
    shell.end = text;
    return shell;
}

} // namespace

const PageShell& pageShell() {
    static const PageShell shell = divided({reinterpret_cast<const char*>(pageText), pageTextSize});
    return shell;
}

} // namespace Corvid::Tool
