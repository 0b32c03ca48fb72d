#include "fuzz/PlainSets.h"

#include "fuzz/FuzzInput.h"
#include "host/base/Hex.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace Corvid::Fuzzing {

namespace {

using Set = PlainMetadata::Set;

constexpr std::size_t keySize = 16;
constexpr std::size_t tagSize = 2;

std::size_t number(std::string_view bytes) {
    std::size_t value = 0;
    for (const char each : bytes) {
        value = value << 8 | static_cast<unsigned char>(each);
    }
    return value;
}

/// Takes so many bytes; nothing where there are fewer.
std::optional<std::string_view> take(std::string_view& rest, std::size_t count) {
    if (rest.size() < count) {
        return std::nullopt;
    }
    const auto taken = rest.substr(0, count);
    rest.remove_prefix(count);
    return taken;
}

/// A length of one byte, or of as many as its first byte says (SMPTE ST 336).
std::optional<std::size_t> takeBer(std::string_view& rest) {
    const auto first = take(rest, 1);
    if (!first || number(*first) < 0x80) {
        return first ? std::optional(number(*first)) : std::nullopt;
    }
    const auto more = take(rest, number(*first) - 0x80);
    return more ? std::optional(number(*more)) : std::nullopt;
}

/// Whether a key has these bytes, the eighth aside.
bool hasKey(std::string_view key, std::string_view expected) {
    return key.substr(0, 7) == expected.substr(0, 7) && key.substr(8) == expected.substr(8);
}

bool isFill(std::string_view key) {
    using namespace std::string_view_literals;
    return hasKey(key, "\x06\x0e\x2b\x34\x01\x01\x01\x02\x03\x01\x02\x10\x01\x00\x00\x00"sv);
}

bool isPrimer(std::string_view key) {
    using namespace std::string_view_literals;
    return hasKey(key, "\x06\x0e\x2b\x34\x02\x05\x01\x01\x0d\x01\x02\x01\x01\x05\x01\x00"sv);
}

void takePrimer(std::string_view value, PlainMetadata& metadata) {
    constexpr std::size_t head = 8;
    if (!take(value, head)) {
        return;
    }
    while (const auto entry = take(value, tagSize + keySize)) {
        // Of several entries for a tag the first counts.
        metadata.primer.emplace(entry->substr(0, tagSize), entry->substr(tagSize));
    }
}

Set setOf(std::string_view key, std::string_view value) {
    Set set{std::string(key), false, {}, std::string(value)};
    const bool hasBerLengths = key[5] == 0x13;
    if (key.substr(0, 5) != std::string_view("\x06\x0e\x2b\x34\x02", 5) ||
        (key[5] != 0x53 && !hasBerLengths)) {
        return set;
    }
    while (!value.empty()) {
        const auto tag = take(value, tagSize);
        std::optional<std::size_t> size;
        if (tag && hasBerLengths) {
            size = takeBer(value);
        } else if (tag) {
            const auto length = take(value, 2);
            size = length ? std::optional(number(*length)) : std::nullopt;
        }
        const auto bytes = size ? take(value, *size) : std::nullopt;
        if (!bytes) {
            set.properties.clear();
            return set;
        }
        set.properties.emplace_back(*tag, *bytes);
    }
    set.isLocalSet = true;
    set.value.clear();
    return set;
}

const std::string* find(const PlainMetadata& metadata, const std::string& tag) {
    const auto found = metadata.primer.find(tag);
    return found == metadata.primer.end() ? nullptr : &found->second;
}

/// The sets as lines of hexadecimal digits in an order of their own.
std::vector<std::string> linesOf(const PlainMetadata& metadata, const PlainMetadata& other) {
    const auto hexOf = [](const std::string& bytes) {
        return Hex::encoded<std::string>(bytes.data(), bytes.size(), Hex::lower);
    };
    std::vector<std::string> lines;
    for (const Set& set : metadata.sets) {
        std::vector<std::string> properties;
        for (const auto& [tag, value] : set.properties) {
            const std::string* label = find(metadata, tag);
            label = label == nullptr ? find(other, tag) : label;
            properties.push_back(" " + hexOf(label == nullptr ? tag : *label) + "=" + hexOf(value));
        }
        std::sort(properties.begin(), properties.end());
        std::string line = hexOf(set.key) + (set.isLocalSet ? ":" : "!") + hexOf(set.value);
        for (const std::string& property : properties) {
            line += property;
        }
        lines.push_back(std::move(line));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace

PlainMetadata readPlainly(std::string_view bytes) {
    PlainMetadata metadata;
    bool isFirst = true;
    while (const auto key = take(bytes, keySize)) {
        const auto size = takeBer(bytes);
        const auto value = size ? take(bytes, *size) : std::nullopt;
        if (!value) {
            break;
        }
        if (isFirst && isPrimer(*key)) {
            takePrimer(*value, metadata);
        } else if (!isFill(*key)) {
            metadata.sets.push_back(setOf(*key, *value));
        }
        isFirst = false;
    }
    return metadata;
}

void expectSameSets(const PlainMetadata& before, const PlainMetadata& after) {
    const std::vector<std::string> was = linesOf(before, after);
    const std::vector<std::string> is = linesOf(after, before);
    std::vector<std::string> missing;
    std::vector<std::string> extra;
    std::set_difference(was.begin(), was.end(), is.begin(), is.end(), std::back_inserter(missing));
    std::set_difference(is.begin(), is.end(), was.begin(), was.end(), std::back_inserter(extra));
    if (!missing.empty() || !extra.empty()) {
        fail("a set is different\n  was " + (missing.empty() ? "not there" : missing.front()) +
             "\n  is  " + (extra.empty() ? "not there" : extra.front()));
    }
}

} // namespace Corvid::Fuzzing
