#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace Corvid::Bench {

/// A folder for the files of a benchmark; they go with the object.
class WorkFolder {
public:
    /// @param parent  where the folder is made; that of temporary files without it.
    explicit WorkFolder(
        const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::string name = (parent / "corvid-bench-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("can't make a temporary folder");
        }
        folder_ = name;
    }
    ~WorkFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

private:
    std::filesystem::path folder_;
};

} // namespace Corvid::Bench
