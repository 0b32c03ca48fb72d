#include "tools/corvid/batch/OutputFolder.h"

#include "tools/corvid/output/Output.h"
#include "tools/corvid/remote/Address.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Corvid::Tool {

namespace {

/// The parts between slashes but for empty ones and ".".
std::vector<std::string> partsOf(const std::string& path) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string part = path.substr(at, end - at);
        if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        at = end + 1;
    }
    return parts;
}

std::string relativePath(const std::string& path) {
    std::string joined;
    for (const std::string& part : partsOf(path)) {
        joined += (joined.empty() ? "" : "/") + part;
    }
    return joined;
}

/// A folder may be one to write to, but not to read; then its file system does what it does.
void synchroniseFolder(const std::string& path) {
    const auto folder =
        DataIO::FileDescriptor::owning(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    static_cast<void>(!folder.isOpen() || ::fsync(folder.number()) == 0);
}

} // namespace

std::string plainPath(const std::string& path) {
    const std::string relative = relativePath(path);
    return path.empty() || path.front() != '/' ? (relative.empty() ? "." : relative)
                                               : "/" + relative;
}

bool leadsUpwards(const std::string& path) {
    const auto parts = partsOf(path);
    return std::find(parts.begin(), parts.end(), "..") != parts.end();
}

std::string OutputFolder::pathOf(const std::string& file) const {
    return folder_ + (folder_.back() == '/' ? "" : "/") + relativePath(withoutSecrets(file)) +
           suffix_;
}

void OutputFolder::makeFoldersFor(const std::string& path) {
    namespace fs = std::filesystem;
    std::vector<fs::path> missing;
    std::error_code error;
    for (fs::path folder = fs::path(path).parent_path();
         !folder.empty() && !fs::exists(folder, error); folder = folder.parent_path()) {
        missing.push_back(folder);
    }
    for (; !missing.empty(); missing.pop_back()) {
        const fs::path& folder = missing.back();
        // Others may make it at the same time.
        if (::mkdir(folder.c_str(), 0777) != 0 && errno != EEXIST) {
            throw OutputError(folder.string(), "can't make the folder", errno);
        }
        const fs::path parent = folder.parent_path();
        synchroniseFolder(parent.empty() ? "." : parent.string());
    }
}

} // namespace Corvid::Tool
