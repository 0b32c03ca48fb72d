#include "tests/xmlutils/Collisions.h"

#include <limits>
#include <map>
#include <random>
#include <xercesc/util/XMLString.hpp>

namespace Corvid::XMLUtils::Testing {

std::vector<std::string> collidingNames(std::size_t count) {
    std::size_t pairs = 1;
    while ((std::size_t{1} << (pairs - 1)) < count) {
        ++pairs;
    }
    // For the hash, "ax" is what "bR" is, unless a carry comes between them.
    std::map<XMLSize_t, std::vector<std::string>> byHash;
    for (std::size_t i = 0;; ++i) {
        std::string name;
        for (std::size_t pair = 0; pair != pairs; ++pair) {
            name += (i >> pair & 1U) != 0 ? "bR" : "ax";
        }
        const std::u16string wide(name.begin(), name.end());
        auto& names =
            byHash[xercesc::XMLString::hash(wide.c_str(), std::numeric_limits<XMLSize_t>::max())];
        names.push_back(name);
        if (names.size() == count) {
            return names;
        }
    }
}

std::vector<std::string> plainNames(std::size_t count, std::size_t length) {
    std::mt19937 random(1);
    std::vector<std::string> names(count);
    for (std::string& name : names) {
        while (name.size() != length) {
            name += static_cast<char>('a' + random() % 26);
        }
    }
    return names;
}

} // namespace Corvid::XMLUtils::Testing
