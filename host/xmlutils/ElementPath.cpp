#include "host/xmlutils/ElementPath.h"

#include <algorithm>

namespace Corvid::XMLUtils {

namespace {

using View = std::u16string_view;

constexpr std::size_t longestIdentifier = 64;
constexpr std::size_t lastSteps = 3;

void append(Utf16Text& path, View text) { path.append(text.begin(), text.end()); }

void appendStep(Utf16Text& path, const PathStep& step) {
    append(path, step.name);
    if (!step.attribute.empty()) {
        append(path, u"[@");
        append(path, step.attribute);
        append(path, u"=\"");
        append(path, View(step.identifier).substr(0, longestIdentifier));
        append(path, u"\"]");
    }
}

} // namespace

bool identifiesElement(View localName) { return localName == u"InstanceUID"; }

Utf16Text elementPath(const std::vector<PathStep>& open, View attributeName) {
    Utf16Text path;
    const std::size_t first = open.size() > 1 ? 1 : 0;
    const std::size_t last = std::max(first + 1, open.size() - std::min(open.size(), lastSteps));
    if (first < open.size()) {
        appendStep(path, open[first]);
    }
    if (last > first + 1) {
        append(path, u"/...");
    }
    for (std::size_t i = last; i < open.size(); ++i) {
        append(path, u"/");
        appendStep(path, open[i]);
    }
    if (!attributeName.empty()) {
        append(path, u"/@");
        append(path, attributeName);
    }
    return path;
}

} // namespace Corvid::XMLUtils
