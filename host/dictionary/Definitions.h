#pragma once

#include "host/dictionary/AttributeRequiredStatus.h"
#include "host/types/Identifiers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Corvid::MetaMetadata {

/// Where a definition is.
struct Origin {
    std::string_view text; ///< name of the text, borrowed
    std::size_t line = 0;  ///< counted from 1; 0 for what the extended dictionary brings along
};

/// "text:line", or words for what the extended dictionary brings along.
std::string toString(const Origin& origin);

/// @throws InvalidDictionary  always: the reason with its origin in front.
[[noreturn]] void refuse(const Origin& origin, const std::string& reason);

using LabelBytes = std::array<unsigned char, 16>;

/// Stands where an entry refers to no other entry.
constexpr std::size_t noEntry = static_cast<std::size_t>(-1);

struct NamespaceEntry {
    std::string prefix;
    std::string uri;
    Origin origin;
};

struct UseEntry {
    std::string name; ///< the property's; empty where `element` is known at once
    std::size_t element = noEntry;
    AttributeRequiredStatus::Status status = AttributeRequiredStatus::required;
    Origin origin;
};

struct SetEntry {
    LabelBytes key{};
    std::size_t space = noEntry;
    std::string tagName;
    std::string parentName; ///< empty for none, or where `parent` is known at once
    std::size_t parent = noEntry;
    bool concrete = true;
    std::vector<UseEntry> uses;
    Origin origin;
};

struct ElementEntry {
    LabelBytes label{};
    std::size_t space = noEntry;
    std::string tagName;
    std::uint32_t schemaIndex = 0; ///< 0: comes after those that have one
    std::uint16_t staticTag = 0;
    Types::Identifiers::Identifier type{};
    Types::Identifiers::Identifier itemType{};
    Origin origin;
};

/// What a dictionary's texts say, before places take the place of names.
struct Definitions {
    std::vector<NamespaceEntry> namespaces;
    std::vector<SetEntry> sets;
    std::vector<ElementEntry> elements;

    std::string nameOf(const SetEntry& set) const;
    std::string nameOf(const ElementEntry& element) const;
};

} // namespace Corvid::MetaMetadata
