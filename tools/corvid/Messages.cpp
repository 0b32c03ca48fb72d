#include "tools/corvid/Messages.h"

#include "host/base/Exceptions.h"
#include "host/types/IdentifierTypes.h"
#include "tools/corvid/Printable.h"

namespace Corvid::Tool {

namespace {

constexpr std::string_view red = "\033[31m";
constexpr std::string_view yellow = "\033[33m";
constexpr std::string_view plain = "\033[0m";
constexpr std::string_view clearedLine = "\r\033[K";

} // namespace

void Messages::setFile(const std::string& path) { file_ = path == "-" ? "standard input" : path; }

void Messages::error(std::string_view text) { error(file_, text); }

void Messages::error(std::string_view file, std::string_view text) {
    // What reads or writes a file names it in its message; once a line is enough.
    std::string message(text);
    if (const auto at = file.empty() ? std::string::npos : message.find(" " + std::string(file));
        at != std::string::npos) {
        message.erase(at, file.size() + 1);
    }
    lastError_ = message;
    line(file, red, "", message);
}

void Messages::warning(std::string_view text) {
    ++warnings_;
    line(file_, yellow, "warning: ", text);
}

void Messages::note(std::string_view text) { line(file_, "", "note: ", text); }

void Messages::warn(const mxf::Warning& warning) {
    std::string text;
    if (warning.offset) {
        text += "byte " + std::to_string(*warning.offset) + ": ";
    }
    if (!warning.set.empty()) {
        text += "set " + warning.set + ": ";
    }
    if (warning.localTag || !warning.property.empty()) {
        text += "property";
        if (warning.localTag) {
            const Types::LocalTag tag(*warning.localTag);
            text += " " + Platform::toUtf8(tag.toString(Types::dottedHexadecimal));
        }
        text += warning.property.empty() ? "" : " " + warning.property;
        text += ": ";
    }
    this->warning(text + warning.text);
}

void Messages::line(std::string_view file, std::string_view colour, std::string_view kind,
                    std::string_view text) {
    std::string whole = "corvid: ";
    if (!file.empty()) {
        whole += printable(file) + ": ";
    }
    const std::string message = std::string(kind) + printable(text);
    whole +=
        colours_ && !colour.empty() ? std::string(colour) + message + std::string(plain) : message;
    whole += '\n';
    showProgress("");
    write(whole);
}

void Messages::showProgress(std::string_view text) {
    if (terminal_ && (progressIsShown_ || !text.empty())) {
        write(std::string(clearedLine) + std::string(text));
        progressIsShown_ = !text.empty();
    }
}

void Messages::write(std::string_view text) {
    try {
        sink_.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    } catch (const Exceptions::IOError&) {
        // Where nobody listens there is nobody to tell.
    }
}

} // namespace Corvid::Tool
