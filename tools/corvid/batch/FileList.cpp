#include "tools/corvid/batch/FileList.h"

#include "tools/corvid/batch/OutputFolder.h"
#include "tools/corvid/remote/Address.h"
#include "tools/corvid/terminal/UsageError.h"

#include <filesystem>
#include <sys/stat.h>

namespace Corvid::Tool {

std::uint64_t shardHash(const std::string& path) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char each : path) {
        hash = (hash ^ static_cast<unsigned char>(each)) * 0x100000001B3;
    }
    return hash;
}

FileList::FileList(const BatchOptions& options) : options_(options) {
    for (const std::string& path : options.files) {
        if (const std::string problem = problemOf(path, false); !problem.empty()) {
            throw UsageError{problem};
        }
    }
    if (!options.list.empty()) {
        list_.emplace(options.list, options.listHasZeros);
    }
    if (!options.outputFolder.empty()) {
        outputFolder_ = identityOf(options.outputFolder);
    }
}

void FileList::collect() {
    if (list_ && list_->isLive()) {
        return;
    }
    for (;;) {
        while (auto file = find()) {
            collected_.push_back(std::move(*file));
        }
        if (!list_ || list_->isEnded()) {
            return;
        }
        list_->readMore();
    }
}

std::optional<ListedFile> FileList::next() {
    if (collected_.empty()) {
        return find();
    }
    ListedFile file = std::move(collected_.front());
    collected_.pop_front();
    return file;
}

bool FileList::isEnded() const {
    return collected_.empty() && !walk_ && nextArgument_ == options_.files.size() &&
           (!list_ || list_->isEnded());
}

std::optional<int> FileList::awaited() const {
    return isEnded() || !list_ || walk_ || !collected_.empty() ? std::nullopt
                                                               : std::optional(list_->number());
}

std::optional<std::size_t> FileList::total() const {
    const bool isKnown =
        !walk_ && nextArgument_ == options_.files.size() && (!list_ || list_->isEnded());
    return isKnown ? std::optional(count_) : std::nullopt;
}

std::optional<ListedFile> FileList::find() {
    for (;;) {
        std::optional<ListedFile> found;
        if (walk_) {
            found = walk_->next();
            if (!found) {
                walk_.reset();
                continue;
            }
        } else if (nextArgument_ != options_.files.size()) {
            found = take(options_.files[nextArgument_++]);
        } else if (auto name = list_ ? list_->next() : std::nullopt) {
            takeOffReturn(*name);
            if (name->empty()) {
                continue;
            }
            const std::string problem = problemOf(*name, true);
            if (!problem.empty() && !list_->isLive()) {
                throw UsageError{problem};
            }
            found = problem.empty() ? take(*name) : ListedFile{*name, problem};
        } else {
            return std::nullopt;
        }
        if (found && isWanted(*found)) {
            ++count_;
            return found;
        }
    }
}

/// The lines of some systems end with a carriage return as well. A name may end with one, too, but
/// then there is a file of that name.
void FileList::takeOffReturn(std::string& name) const {
    struct stat status {};
    if (!options_.listHasZeros && name.back() == '\r' && ::lstat(name.c_str(), &status) != 0) {
        name.pop_back();
    }
}

/// A file; of a folder nothing, but then there is a walk.
std::optional<ListedFile> FileList::take(const std::string& path) {
    std::error_code error;
    if (options_.recursive && path != "-" && std::filesystem::is_directory(path, error)) {
        walk_.emplace(path, outputFolder_);
        return std::nullopt;
    }
    return ListedFile{path};
}

bool FileList::isWanted(ListedFile& file) {
    std::string plain = file.path;
    if (file.path == "-") {
        plain = ""; // "./-" is a file
    } else if (!isAddress(file.path)) {
        plain = plainPath(file.path);
    } else if (!options_.outputFolder.empty()) {
        // There, addresses that differ in their query are one.
        plain = plainPath(withoutSecrets(file.path));
    }
    const auto& shard = options_.shard;
    if (shard.count != 0 && shardHash(plain) % shard.count != shard.number - 1) {
        return false;
    }
    // In an output folder, so are "/clip.mxf" and "clip.mxf".
    const std::string other = plain.empty() || plain.front() != '/' ? "/" + plain : plain.substr(1);
    if (!options_.outputFolder.empty() && known_.count(other) != 0) {
        file.error = "its result would replace that of " + other;
    }
    return known_.insert(std::move(plain)).second;
}

std::string FileList::problemOf(const std::string& path, bool isListed) const {
    if (path.empty()) {
        return "the name of a file is empty";
    }
    if (path.find('\0') != std::string::npos) {
        return "the list " + list_->name() + " has zeros; -0 reads such a list";
    }
    if (path == "-" && options_.list == "-") {
        return "standard input can't be both a file and the list of files";
    }
    if (path == "-" && isListed) {
        return "standard input has no place in a list";
    }
    if (options_.outputFolder.empty()) {
        return "";
    }
    if (path == "-") {
        return "standard input has no name in " + options_.outputFolder;
    }
    return leadsUpwards(withoutSecrets(path))
               ? withoutSecrets(path) + ": '..' would lead out of " + options_.outputFolder
               : "";
}

} // namespace Corvid::Tool
