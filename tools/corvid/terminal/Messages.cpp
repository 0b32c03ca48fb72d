#include "tools/corvid/terminal/Messages.h"

#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "tools/corvid/remote/Address.h"
#include "tools/corvid/terminal/Printable.h"

#include <algorithm>

namespace Corvid::Tool {

namespace {

constexpr std::string_view red = "\033[31m";
constexpr std::string_view yellow = "\033[33m";
constexpr std::string_view plain = "\033[0m";
constexpr std::string_view clearedLine = "\r\033[K";

/// What reads or writes a file names it in its message, before a colon; once a line is enough. Any
/// other word may be the name of a file by chance.
std::string withoutName(std::string_view file, std::string_view text) {
    std::string message(text);
    // An exception has its name as UTF-16, so that bytes which are not UTF-8 are lost there.
    const std::string name = " " + Platform::toUtf8(Platform::fromUtf8(file));
    if (const auto at = file.empty() ? std::string::npos : message.find(name + ":");
        at != std::string::npos) {
        message.erase(at, name.size());
    }
    return message;
}

/// An error may name an address that no verb reads from there, as people wrote it.
std::string withoutSecretsIn(std::string_view text) {
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(" '\"", at), text.size());
        std::string word(text.substr(at, end - at));
        const bool hasColon = !word.empty() && word.back() == ':';
        if (hasColon) {
            word.pop_back();
        }
        shown += shownName(word) + (hasColon ? ":" : "");
        at = std::min(end + 1, text.size());
        shown += text.substr(end, at - end);
    }
    return shown;
}

} // namespace

void Messages::setFile(const std::string& path) {
    flush();
    log_ = {};
    written_.clear();
    file_ = path == "-" ? "standard input" : shownName(path);
}

void Messages::error(std::string_view text) { error(file_, text); }

void Messages::error(std::string_view file, std::string_view text) {
    flush();
    const std::string name = shownName(std::string(file));
    lastError_ = withoutName(name, withoutSecretsIn(text));
    line(name, red, "", lastError_);
}

std::string Messages::withoutFile(std::string_view text) const { return withoutName(file_, text); }

void Messages::note(std::string_view text) { line(file_, "", "note: ", text); }

void Messages::warn(const mxf::Warning& warning) {
    ++warningCount_;
    log_.add(warning);
}

void Messages::flush() {
    if (holdsWarnings_) {
        return;
    }
    const auto& entries = log_.entries();
    written_.resize(entries.size());
    for (std::size_t i = 0; i != entries.size(); ++i) {
        if (written_[i] != entries[i].count) {
            written_[i] = entries[i].count;
            line(file_, yellow, "warning: ", entries[i].first.message(entries[i].count - 1));
        }
    }
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
        // Where nobody reads there is nobody to write to.
    }
}

} // namespace Corvid::Tool
