#pragma once

#include <string>

namespace Corvid::Tool {

/// What is put around parts of a text that a terminal shows; nothing where it shall have no
/// colours.
struct Style {
    std::string heading;
    std::string quiet;
    std::string odd;
    std::string end;

    explicit Style(bool colours) {
        if (colours) {
            heading = "\033[1m";
            quiet = "\033[2m";
            odd = "\033[33m";
            end = "\033[0m";
        }
    }
};

} // namespace Corvid::Tool
