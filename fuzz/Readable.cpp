#include "fuzz/Readable.h"

#include "fuzz/FuzzInput.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

namespace Corvid::Fuzzing {

namespace {

bool isUtf8(const std::string& text) {
    try {
        static_cast<void>(nlohmann::json(text).dump());
        return true;
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

bool isControl(char each) {
    const auto byte = static_cast<unsigned char>(each);
    return (byte < 0x20 && each != '\n') || byte == 0x7F;
}

/// U+0080 to U+009F.
bool hasLongControl(const std::string& text) {
    for (auto at = text.find('\xC2'); at != std::string::npos; at = text.find('\xC2', at + 1)) {
        if (at + 1 != text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0) {
            return true;
        }
    }
    return false;
}

bool changesLayout(const std::string& text) {
    constexpr std::array characters = {"\u2028", "\u2029", "\u202A", "\u202B", "\u202C", "\u202D",
                                       "\u202E", "\u2066", "\u2067", "\u2068", "\u2069"};
    return std::any_of(characters.begin(), characters.end(),
                       [&](const char* each) { return text.find(each) != std::string::npos; });
}

} // namespace

void expectReadable(const std::string& text, const char* what) {
    if (!isUtf8(text)) {
        fail(std::string(what) + " is not UTF-8:\n" + text);
    }
    if (std::any_of(text.begin(), text.end(), isControl) || hasLongControl(text)) {
        fail(std::string(what) + " has a control character:\n" + text);
    }
    if (changesLayout(text)) {
        fail(std::string(what) + " has a character that changes its layout:\n" + text);
    }
}

void expectJson(const std::string& text, const char* what) {
    if (!nlohmann::json::accept(text)) {
        fail(std::string(what) + " is not JSON:\n" + text);
    }
}

void expectBounded(const std::string& text, std::size_t inputSize, std::size_t times,
                   std::size_t constant, const char* what) {
    if (text.size() > times * inputSize + constant) {
        fail(std::string(what) + " has " + std::to_string(text.size()) +
             " bytes, for an input of " + std::to_string(inputSize) + " bytes");
    }
}

std::string withoutColours(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto escape = std::min(text.find("\033["), text.size());
        plain += text.substr(0, escape);
        text.remove_prefix(escape);
        text.remove_prefix(text.empty() ? 0 : std::min(text.find('m'), text.size() - 1) + 1);
    }
    return plain;
}

} // namespace Corvid::Fuzzing
