#pragma once

#include <cstddef>
#include <string>

namespace Corvid::Testing {

/// A document of the form that to-xml writes, with places where a test puts more of something.
struct DocumentParts {
    std::string inFront;        ///< before the root
    std::string rootAttributes; ///< beside the namespaces of the format
    std::string inPreface;      ///< after its operational pattern
    std::string sets;           ///< after the Preface

    std::string text() const;
};

/// The InstanceUID of a set in a document.
std::string instanceText(std::size_t number);
/// A TimelineTrack with that content.
std::string trackText(std::size_t number, const std::string& content,
                      const std::string& attributes = "");
/// A name with a number, of ASCII letters and digits.
std::string numbered(const char* name, std::size_t number);
/// A text with another place for each number, joined.
template <class Make> std::string repeated(std::size_t count, Make make) {
    std::string text;
    for (std::size_t i = 0; i != count; ++i) {
        text += make(i);
    }
    return text;
}

} // namespace Corvid::Testing
