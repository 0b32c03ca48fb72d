#pragma once

#include <algorithm>
#include <map>
#include <regex>
#include <string>
#include <string_view>
#include <utility>

/// Documents compared as text, but for what does not come back when they are read.
namespace Corvid::Testing {

/// The text with the identifiers of sets replaced by numbers in order of appearance: a reader may
/// give every set a new one.
inline std::string withoutIdentifiers(const std::string& xml) {
    static constexpr std::string_view begin = "=\"";
    const auto endsWith = [](std::string_view text, std::string_view end) {
        return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
    };
    std::map<std::string, std::size_t> numbers;
    std::string result;
    std::size_t done = 0;
    for (std::size_t at = xml.find(begin); at != std::string::npos; at = xml.find(begin, at)) {
        const std::string_view name(xml.data() + done, at - done);
        at += begin.size();
        if (!endsWith(name, "InstanceUID") && !endsWith(name, "TargetInstance") &&
            !endsWith(name, " set")) {
            continue;
        }
        const std::size_t end = xml.find('"', at);
        result.append(xml, done, at - done);
        result +=
            std::to_string(numbers.emplace(xml.substr(at, end - at), numbers.size()).first->second);
        done = end;
    }
    return result.append(xml, done, std::string::npos);
}

/// The text of a compact document without empty elements and what holds nothing else: they carry no
/// value, so they do not come back.
inline std::string withoutEmptyElements(std::string xml) {
    static const std::regex empty("<(\\w+:\\w+)( [\\w:]+=\"[^\"]*\")*(/>|></\\1>)");
    // Sets and links say what they have to say in attributes.
    static const std::regex isSetOrLink("InstanceUID|TargetInstance");
    for (std::string before; before != xml;) {
        before = std::exchange(xml, {});
        std::size_t done = 0;
        for (std::sregex_iterator i(before.begin(), before.end(), empty), end; i != end; ++i) {
            const auto begin = static_cast<std::size_t>(i->position());
            xml.append(before, done, begin - done);
            if (std::regex_search(i->str(), isSetOrLink)) {
                const auto closing = static_cast<std::size_t>(i->length(3));
                xml += i->str().substr(0, i->str().size() - closing) + "/>";
            }
            done = begin + static_cast<std::size_t>(i->length());
        }
        xml.append(before, done, std::string::npos);
    }
    return xml;
}

/// Where two texts part, with what is around.
inline std::string difference(const std::string& a, const std::string& b) {
    const auto at = static_cast<std::size_t>(
        std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    const std::size_t from = at < 200 ? 0 : at - 200;
    return "at " + std::to_string(at) + ":\n" + a.substr(from, 500) + "\n--- and ---\n" +
           b.substr(from, 500);
}

} // namespace Corvid::Testing
