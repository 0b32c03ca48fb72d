#pragma once

#include "host/base/KeyedHash.h"

#include <string>

namespace Corvid::Tool {

/// A hash for tables of what files and lists name.
class PathHash {
public:
    std::size_t operator()(const std::string& text) const noexcept {
        return hash_(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }

private:
    KeyedHash hash_{KeyedHash::randomKey()};
};

} // namespace Corvid::Tool
