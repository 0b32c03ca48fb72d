#include "inspection/NameMatch.h"

#include <algorithm>
#include <sstream>

namespace Corvid::Inspection {

NameMatch::NameMatch(const std::string& wanted) : wanted_(wanted), folded_(folded(wanted)) {
    std::istringstream words(wanted);
    for (std::string word; words >> word;) {
        words_.push_back(folded(word));
    }
}

NameMatch::Likeness NameMatch::compare(const std::string& name) const {
    const std::string other = folded(name);
    if (folded_.empty() || other.empty()) {
        return none;
    }
    if (name == wanted_) {
        return same;
    }
    if (other == folded_) {
        return alike;
    }
    const bool isPart = std::all_of(words_.begin(), words_.end(), [&other](const auto& word) {
        return other.find(word) != std::string::npos;
    });
    return isPart ? part : none;
}

} // namespace Corvid::Inspection
