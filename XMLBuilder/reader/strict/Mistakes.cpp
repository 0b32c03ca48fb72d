#include "XMLBuilder/reader/strict/Mistakes.h"

#include "XMLBuilder/reader/nodes/NodeText.h"

namespace Corvid::XMLBuilder {

namespace {

std::string cutOff(std::u16string_view text, std::size_t most) {
    return narrow(text.substr(0, most)) + (text.size() > most ? "..." : "");
}

void keep(std::vector<Mistakes::Entry>& entries, std::size_t& count, const DocumentNode& at,
          const std::string& text) {
    if (++count <= Mistakes::mostKept) {
        entries.push_back({at.line, at.column, pathOf(at) + ": " + text});
    }
}

} // namespace

void Mistakes::add(const DocumentNode& at, const std::string& text) {
    keep(entries_, count_, at, text);
}

void Mistakes::add(Entry entry) {
    if (++count_ <= mostKept) {
        entries_.push_back(std::move(entry));
    }
}

void Mistakes::doubt(const DocumentNode& at, const std::string& text) {
    keep(doubts_, doubtCount_, at, text);
}

std::string pathOf(const DocumentNode& node) {
    constexpr std::size_t mostNames = 8;
    constexpr std::size_t longestName = 100;
    std::string path;
    const bool isText = node.kind == DocumentNode::Kind::text;
    const DocumentNode* each = isText ? node.parent : &node;
    for (std::size_t i = 0; i != mostNames && each != nullptr; ++i, each = each->parent) {
        path.insert(0, (each->kind == DocumentNode::Kind::attribute ? "/@" : "/") +
                           cutOff(each->name, longestName));
    }
    return (each == nullptr ? "" : "...") + path;
}

std::string quoted(std::u16string_view text) {
    constexpr std::size_t shown = 60;
    return "'" + cutOff(text, shown) + "'";
}

} // namespace Corvid::XMLBuilder
