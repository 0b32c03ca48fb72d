#pragma once

#include "host/base/KeyedHash.h"

#include <cstddef>
#include <string_view>

namespace Corvid {

/// A hash for tables of what files, documents and lists name; each has a secret key of its own.
class TextHash {
public:
    std::size_t operator()(std::string_view text) const noexcept {
        return hash_(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }

private:
    KeyedHash hash_{KeyedHash::randomKey()};
};

} // namespace Corvid
