#include "tools/corvid/batch/FolderWalk.h"

#include "tools/corvid/output/HiddenName.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace Corvid::Tool {

namespace {

namespace fs = std::filesystem;

bool isClipName(std::string_view name) {
    constexpr std::string_view suffix = ".mxf";
    if (name.size() < suffix.size() || name.substr(0, unfinishedName.size()) == unfinishedName) {
        return false;
    }
    name.remove_prefix(name.size() - suffix.size());
    return std::equal(name.begin(), name.end(), suffix.begin(), [](char letter, char wanted) {
        return letter == wanted || (letter >= 'A' && letter <= 'Z' && letter - 'A' + 'a' == wanted);
    });
}

/// Not for pipes and devices, which nobody means. A link that leads nowhere is one: it is missed.
bool isClip(const fs::directory_entry& entry, const std::string& name) {
    if (!isClipName(name)) {
        return false;
    }
    std::error_code error;
    const fs::file_type type = entry.status(error).type();
    return type == fs::file_type::regular || type == fs::file_type::not_found ||
           type == fs::file_type::none;
}

/// What nobody may look at could be one, which is then missed with a word.
bool isFolder(const fs::directory_entry& entry) {
    std::error_code error;
    const fs::file_type type = entry.symlink_status(error).type();
    return type == fs::file_type::directory || type == fs::file_type::none;
}

ListedFile unreadable(std::string path, const std::error_code& error) {
    return {std::move(path), "can't read the folder: " + error.message()};
}

} // namespace

FolderWalk::FolderWalk(std::string root, std::optional<FileIdentity> skipped)
    : root_(std::move(root)), skipped_(skipped) {}

std::optional<ListedFile> FolderWalk::next() {
    if (root_) {
        const std::string root = *std::exchange(root_, std::nullopt);
        if (auto failure = enter(root.back() == '/' ? root : root + "/")) {
            return failure;
        }
    }
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (level.entries.empty()) {
            levels_.pop_back();
            continue;
        }
        const Entry entry = std::move(level.entries.back());
        level.entries.pop_back();
        const std::string path = level.path + entry.name;
        if (!entry.isFolder()) {
            return ListedFile{path};
        }
        if (auto failure = enter(path)) {
            return failure;
        }
    }
    return std::nullopt;
}

std::optional<ListedFile> FolderWalk::enter(const std::string& path) {
    const auto identity = identityOf(path);
    if (!identity) {
        return unreadable(path, {errno, std::generic_category()});
    }
    const bool isInside = std::any_of(levels_.begin(), levels_.end(), [&](const Level& each) {
        return each.identity == *identity;
    });
    // A folder that people name is meant, also where results go into it.
    if (isInside || (!levels_.empty() && skipped_ == identity)) {
        return std::nullopt;
    }
    Level level{path, *identity, {}};
    std::error_code error;
    for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (isFolder(*entry)) {
            // The slash counts in the order, as it does in that of whole paths.
            level.entries.push_back({name + "/"});
        } else if (isClip(*entry, name)) {
            level.entries.push_back({name});
        }
    }
    if (error) {
        return unreadable(path, error);
    }
    std::sort(level.entries.begin(), level.entries.end(),
              [](const Entry& a, const Entry& b) { return a.name > b.name; });
    levels_.push_back(std::move(level));
    return std::nullopt;
}

} // namespace Corvid::Tool
