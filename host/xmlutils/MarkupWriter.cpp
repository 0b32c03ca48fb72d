#include "host/xmlutils/MarkupWriter.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/TextEncoder.h"

#include <algorithm>
#include <array>

namespace Corvid::XMLUtils {

namespace {

using View = MarkupWriter::View;

constexpr View xmlNamespace = u"http://www.w3.org/XML/1998/namespace";

constexpr unsigned char inText = 1;
constexpr unsigned char inAttribute = 2;
constexpr unsigned char inMarkup = 4;

/// The characters that must be escaped, by place.
constexpr std::array<unsigned char, 0x80> makeSpecial() {
    std::array<unsigned char, 0x80> special{};
    for (std::size_t unit = 0; unit != 0x20; ++unit) {
        special[unit] = inText | inAttribute | inMarkup;
    }
    special['\t'] = inAttribute;
    special['\n'] = inAttribute;
    // A parser turns a bare CR into LF.
    special['\r'] = inText | inAttribute;
    special['&'] = inText | inAttribute;
    special['<'] = inText | inAttribute;
    special['>'] = inText | inAttribute;
    special['"'] = inAttribute;
    return special;
}
constexpr std::array<unsigned char, 0x80> special = makeSpecial();

/// Deeper levels are indented no further: the blanks of a deep document would grow quadratically.
constexpr std::size_t deepestIndent = 40;
constexpr std::size_t blanksPerLevel = 2;

bool isSurrogatePair(View text, std::size_t at) {
    return text[at] < 0xDC00 && at + 1 < text.size() && text[at + 1] >= 0xDC00 &&
           text[at + 1] <= 0xDFFF;
}

bool isDeclaration(View name) {
    return name.substr(0, 5) == u"xmlns" && (name.size() == 5 || name[5] == u':');
}

/// The prefix that a declaration is about; empty for the default namespace.
View declaredPrefix(View name) { return name.size() == 5 ? View(u"") : name.substr(6); }

std::string utf8(View text) { return Platform::toUtf8(Utf16Text(text.begin(), text.end())); }

} // namespace

void MarkupWriter::startDocument(EncodingType encoding, std::string_view inFront) {
    const char* const name = nameOf(encoding);
    out_.ascii("<?xml version=\"1.0\" encoding=\"");
    out_.ascii(name);
    out_.ascii("\"?>");
    out_.ascii(inFront);
}

void MarkupWriter::endDocument() {
    newLine();
    out_.flush();
}

void MarkupWriter::startElement(const Name& name, const Attribute* attributes, std::size_t count) {
    newLine();
    onOneLine_.push_back(isOnOneLine());
    open_.push_back({name.qualified, {}, {}});
    for (std::size_t i = 0; i != count; ++i) {
        if (identifiesElement(attributes[i].local)) {
            PathStep& step = open_.back();
            step.attribute = attributes[i].name.qualified;
            step.identifier = attributes[i].value;
            break;
        }
    }
    scope_.enter();
    out_.ascii("<");
    units(name.qualified);
    readDeclarations(attributes, count);
    checkPrefix(name);
    if (name.uri != xmlNamespace && scope_.uriOf(name.prefix) != name.uri) {
        declare(name.prefix, name.uri);
    }
    writeDeclarations(attributes, count);
    for (std::size_t i = 0; i != count; ++i) {
        writeAttribute(attributes[i]);
    }
    hasContent_ = false;
}

void MarkupWriter::startContent(bool onOneLine) {
    out_.ascii(">");
    hasContent_ = true;
    onOneLine_.back() = onOneLine_.back() || onOneLine;
}

void MarkupWriter::endElement() {
    const View name = open_.back().name;
    const bool wasOnOneLine = onOneLine_.back();
    open_.pop_back();
    onOneLine_.pop_back();
    scope_.leave();
    if (!hasContent_) {
        out_.ascii("/>");
        hasContent_ = true;
        return;
    }
    if (!wasOnOneLine) {
        newLine();
    }
    out_.ascii("</");
    units(name);
    out_.ascii(">");
}

void MarkupWriter::readDeclarations(const Attribute* attributes, std::size_t count) {
    for (std::size_t i = 0; i != count; ++i) {
        const View name = attributes[i].name.qualified;
        if (!isDeclaration(name)) {
            continue;
        }
        const View prefix = declaredPrefix(name);
        const View uri = attributes[i].value;
        if ((!prefix.empty() && uri.empty()) || prefix == u"xmlns") {
            refuse("attribute " + utf8(name) + " declares no namespace", __LINE__);
        }
        scope_.declare(prefix, uri);
    }
}

void MarkupWriter::writeDeclarations(const Attribute* attributes, std::size_t count) {
    for (std::size_t i = 0; i != count; ++i) {
        const View name = attributes[i].name.qualified;
        // The name of the element itself may have taken the prefix for another namespace.
        if (isDeclaration(name) && scope_.uriOf(declaredPrefix(name)) == attributes[i].value) {
            writeDeclaration(declaredPrefix(name), attributes[i].value);
        }
    }
}

void MarkupWriter::writeAttribute(const Attribute& attribute) {
    const auto& [name, local, value] = attribute;
    if (isDeclaration(name.qualified)) {
        return;
    }
    checkPrefix(name);
    View written = name.prefix;
    if (!name.uri.empty() && name.uri != xmlNamespace &&
        (written.empty() || scope_.uriOf(written) != name.uri)) {
        if (written.empty() || !scope_.uriOf(written).empty()) {
            written = madePrefixes_.emplace_back(scope_.unusedPrefix());
        }
        declare(written, name.uri);
    }
    out_.ascii(" ");
    if (written.empty()) {
        units(name.qualified);
    } else {
        units(written);
        out_.ascii(":");
        units(local);
    }
    out_.ascii("=\"");
    escaped(value, inAttribute, name.qualified);
    out_.ascii("\"");
}

void MarkupWriter::declare(View prefix, View uri) {
    scope_.declare(prefix, uri);
    writeDeclaration(prefix, uri);
}

void MarkupWriter::writeDeclaration(View prefix, View uri) {
    out_.ascii(prefix.empty() ? " xmlns" : " xmlns:");
    units(prefix);
    out_.ascii("=\"");
    escaped(uri, inAttribute, u"xmlns");
    out_.ascii("\"");
}

/// A prefix without a namespace can't be written.
void MarkupWriter::checkPrefix(const Name& name) const {
    if (name.uri.empty() && name.qualified.find(u':') != View::npos) {
        refuse("prefix of the name " + utf8(name.qualified) + " has no namespace", __LINE__);
    }
}

void MarkupWriter::text(View value) { escaped(value, inText); }

void MarkupWriter::comment(View value) {
    if (value.find(u"--") != View::npos || (!value.empty() && value.back() == u'-')) {
        refuse("comment with two hyphens or a hyphen at its end found", __LINE__);
    }
    newLine();
    out_.ascii("<!--");
    escaped(value, inMarkup);
    out_.ascii("-->");
}

void MarkupWriter::processingInstruction(View target, View data) {
    if (data.find(u"?>") != View::npos) {
        refuse("processing instruction with its end mark inside found", __LINE__);
    }
    newLine();
    out_.ascii("<?");
    units(target);
    if (!data.empty()) {
        out_.ascii(" ");
        escaped(data, inMarkup);
    }
    out_.ascii("?>");
}

/// Ends the line and indents the next one, where white space may be.
void MarkupWriter::newLine() {
    static constexpr char blanks[] = "\n                                        "
                                     "                                        ";
    static_assert(sizeof blanks == 2 + deepestIndent * blanksPerLevel);
    if (!isOnOneLine()) {
        const std::size_t level = std::min(open_.size(), deepestIndent);
        out_.ascii(std::string_view(blanks, 1 + level * blanksPerLevel));
    }
}

void MarkupWriter::units(View text) { out_.units(text.data(), text.size()); }

void MarkupWriter::escaped(View value, unsigned char place, View attributeName) {
    std::size_t run = 0;
    std::size_t at = 0;
    while (at != value.size()) {
        const char16_t unit = value[at];
        if (unit < 0x80 ? (special[unit] & place) == 0
                        : unit < 0xD800 || (unit > 0xDFFF && unit < 0xFFFE)) {
            ++at;
        } else if (unit >= 0xD800 && unit < 0xFFFE && isSurrogatePair(value, at)) {
            at += 2;
        } else {
            units(value.substr(run, at - run));
            reference(unit, at, attributeName);
            run = ++at;
        }
    }
    units(value.substr(run));
}

void MarkupWriter::reference(char16_t unit, std::size_t position, View attributeName) {
    switch (unit) {
    case u'&':
        return out_.ascii("&amp;");
    case u'<':
        return out_.ascii("&lt;");
    case u'>':
        return out_.ascii("&gt;");
    case u'"':
        return out_.ascii("&quot;");
    case u'\t':
        return out_.ascii("&#x9;");
    case u'\n':
        return out_.ascii("&#xA;");
    case u'\r':
        return out_.ascii("&#xD;");
    default:
        invalid_.found({elementPath(open_, attributeName), unit, position});
        const char16_t replacement = 0xFFFD;
        out_.units(&replacement, 1);
    }
}

void MarkupWriter::refuse(const std::string& what, int line) const {
    const std::string place = Platform::toUtf8(elementPath(open_, {}));
    throw Exceptions::InvalidFormat((place.empty() ? "document" : place) + ": " + what, __FILE__,
                                    line);
}

} // namespace Corvid::XMLUtils
