#pragma once

#include <string_view>

namespace Corvid::Tool {

/// The page without its data: report/bundle/page.html between the places for what a clip says.
struct PageShell {
    std::string_view beforeTitle;
    std::string_view beforeSummary; ///< text for readers without JavaScript
    std::string_view beforeData;    ///< JSON
    std::string_view end;
};

const PageShell& pageShell();

} // namespace Corvid::Tool
