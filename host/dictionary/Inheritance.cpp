#include "host/dictionary/Inheritance.h"

#include "host/dictionary/DictionaryLimits.h"

#include <algorithm>
#include <vector>

namespace Corvid::MetaMetadata {

namespace {

/// The label of InstanceUID (SMPTE ST 377-1), version byte zero.
constexpr LabelBytes instanceUID = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x00,
                                    0x01, 0x01, 0x15, 0x02, 0x00, 0x00, 0x00, 0x00};

/// Walks down from the sets without ancestor, with the properties of the current line at hand.
class Walk {
public:
    explicit Walk(const Definitions& definitions)
        : definitions_(definitions), children_(definitions.sets.size()),
          visited_(definitions.sets.size()), usedAt_(definitions.elements.size()) {
        for (std::size_t i = 0; i != definitions.elements.size(); ++i) {
            LabelBytes label = definitions.elements[i].label;
            label[7] = 0;
            if (label == instanceUID) {
                instanceUIDEntry_ = i;
            }
        }
        for (std::size_t i = 0; i != definitions.sets.size(); ++i) {
            const std::size_t parent = definitions.sets[i].parent;
            (parent == noEntry ? roots_ : children_[parent]).push_back(i);
        }
    }

    void run() {
        for (const std::size_t root : roots_) {
            visit(root, 0);
        }
        const auto missed = std::find(visited_.begin(), visited_.end(), false);
        if (missed != visited_.end()) {
            const auto& set =
                definitions_.sets[static_cast<std::size_t>(missed - visited_.begin())];
            refuse(set.origin, "set " + definitions_.nameOf(set) +
                                   " is its own ancestor, or inherits "
                                   "from a set that is, by way of " +
                                   ancestorOf(set));
        }
    }

private:
    void visit(std::size_t index, std::size_t depth) {
        const SetEntry& set = definitions_.sets[index];
        visited_[index] = true;
        if (depth > deepestInheritance) {
            refuse(set.origin, "set " + definitions_.nameOf(set) + " has more than " +
                                   std::to_string(deepestInheritance) + " ancestors");
        }
        properties_ += set.uses.size();
        countProperties(set);
        for (const UseEntry& use : set.uses) {
            const UseEntry*& other = usedAt_[use.element];
            if (other != nullptr) {
                refuse(use.origin.line != 0 ? use.origin : other->origin,
                       "set " + definitions_.nameOf(set) + " has property " +
                           definitions_.nameOf(definitions_.elements[use.element]) +
                           " twice, the other time from " +
                           toString(use.origin.line != 0 ? other->origin : use.origin));
            }
            other = &use;
        }
        if (set.concrete &&
            (instanceUIDEntry_ == noEntry || usedAt_[instanceUIDEntry_] == nullptr)) {
            refuse(set.origin, "concrete set " + definitions_.nameOf(set) +
                                   " has no InstanceUID, nor has a set that it inherits from");
        }
        for (const std::size_t child : children_[index]) {
            visit(child, depth + 1);
        }
        for (const UseEntry& use : set.uses) {
            usedAt_[use.element] = nullptr;
        }
        properties_ -= set.uses.size();
    }

    void countProperties(const SetEntry& set) {
        if (properties_ > mostProperties) {
            refuse(set.origin, "set " + definitions_.nameOf(set) + " has " +
                                   std::to_string(properties_) +
                                   " properties with those of its ancestors, expected at most " +
                                   std::to_string(mostProperties));
        }
        propertiesOfAll_ += properties_;
        if (propertiesOfAll_ > mostPropertiesOfAllSets) {
            refuse(set.origin, "set " + definitions_.nameOf(set) + ": all sets have more than " +
                                   std::to_string(mostPropertiesOfAllSets) +
                                   " properties together with those of their ancestors; divide the "
                                   "dictionary");
        }
    }

    std::string ancestorOf(const SetEntry& set) const {
        const SetEntry& parent = definitions_.sets[set.parent];
        return definitions_.nameOf(parent) + " (" + toString(parent.origin) + ")";
    }

    const Definitions& definitions_;
    std::vector<std::size_t> roots_;
    std::vector<std::vector<std::size_t>> children_;
    std::vector<bool> visited_;
    std::vector<const UseEntry*> usedAt_;
    std::size_t instanceUIDEntry_ = noEntry;
    std::size_t properties_ = 0; ///< of the current line
    std::size_t propertiesOfAll_ = 0;
};

} // namespace

void checkInheritance(const Definitions& definitions) { Walk(definitions).run(); }

} // namespace Corvid::MetaMetadata
