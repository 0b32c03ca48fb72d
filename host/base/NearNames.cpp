#include "host/base/NearNames.h"

#include <algorithm>

namespace Corvid::Platform {

namespace {

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLetterOrDigit(char c) {
    return isUpper(c) || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

} // namespace

std::string folded(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (isLetterOrDigit(c)) {
            result += isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    return result;
}

NearNames::NearNames(const std::string& wanted)
    : wanted_(folded(wanted)), furthest_(1 + wanted_.size() / 5) {}

void NearNames::offer(const std::string& name) {
    const std::size_t distance = editDistance(folded(name), wanted_, furthest_);
    if (distance <= furthest_ && !wanted_.empty()) {
        found_.emplace_back(distance, name);
    }
}

std::vector<std::string> NearNames::best() {
    constexpr std::size_t most = 5;
    std::sort(found_.begin(), found_.end());
    std::vector<std::string> names;
    for (const auto& [distance, name] : found_) {
        if (names.size() != most && std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
    return names;
}

std::size_t editDistance(const std::string& a, const std::string& b, std::size_t most) {
    const std::size_t difference = a.size() < b.size() ? b.size() - a.size() : a.size() - b.size();
    if (difference > most) {
        return difference;
    }
    // Row by row of the table of distances between the beginnings of both; a swap needs the row
    // before the last.
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j != row.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool isSame = a[i - 1] == b[j - 1];
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isSame ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

} // namespace Corvid::Platform
