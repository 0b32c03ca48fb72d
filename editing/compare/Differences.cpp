#include "editing/compare/Differences.h"

#include "host/base/KeyedHash.h"
#include "host/types/UID.h"

#include <algorithm>
#include <numeric>

namespace Corvid::Editing {

Differences::Identity Differences::identityOf(const Difference& difference) {
    // One key for all, so that two comparisons agree. It is secret: a file chooses what is hashed.
    static const KeyedHash hash(
        Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion).bytes());
    std::string text(1, static_cast<char>(difference.kind));
    for (const auto* part : {&difference.set, &difference.instanceUID, &difference.property}) {
        text += *part;
        text += '\0';
    }
    return hash(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

void Differences::add(Difference difference) {
    ++counts_[index(difference.kind)];
    ++alike_.try_emplace(identityOf(difference), Alike{difference.kind, 0}).first->second.count;
    list(std::move(difference));
}

void Differences::list(Difference difference) {
    std::size_t& listed = listedOfKind_[index(difference.kind)];
    if (listed != listed_) {
        ++listed;
        list_.push_back(std::move(difference));
    }
}

void Differences::unite(Differences fresh) {
    for (const auto& [identity, alike] : fresh.alike_) {
        const auto known = alike_.find(identity);
        const std::size_t here = known == alike_.end() ? 0 : known->second.count;
        counts_[index(alike.kind)] += alike.count - std::min(alike.count, here);
    }
    // Takes one of those that are alike, if any is left.
    const auto take = [](auto& alike, const Difference& difference) {
        const auto found = alike.find(identityOf(difference));
        if (found == alike.end() || found->second.count == 0) {
            return false;
        }
        --found->second.count;
        return true;
    };
    for (Difference& each : list_) {
        each.identifiers =
            take(fresh.alike_, each) ? DifferenceIdentifiers::both : DifferenceIdentifiers::written;
    }
    for (Difference& each : fresh.list_) {
        if (!take(alike_, each)) {
            each.identifiers = DifferenceIdentifiers::fresh;
            list(std::move(each));
        }
    }
    alike_.clear();
}

std::size_t Differences::count() const noexcept {
    return std::accumulate(counts_.begin(), counts_.end(), std::size_t{0});
}

} // namespace Corvid::Editing
