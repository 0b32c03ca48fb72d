#pragma once

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <system_error>

/// Where tests find what they need. Paths come from the build, never from a source.
namespace Corvid::Testing {

/// The root of the source tree.
inline std::filesystem::path sourceDir() { return CORVID_TEST_SOURCE_DIR; }

/// The root of the build tree.
inline std::filesystem::path binaryDir() { return CORVID_TEST_BINARY_DIR; }

/// A folder beside the repository that may be absent: the environment variable if it is set, else
/// ../shared/<name>. Empty if there is no such folder; a test that needs it then skips.
inline std::filesystem::path sharedDir(const char* variable, const char* name) {
    const char* const given = std::getenv(variable);
    const std::filesystem::path path =
        given != nullptr ? std::filesystem::path(given) : sourceDir() / ".." / "shared" / name;
    return std::filesystem::is_directory(path) ? path.lexically_normal() : std::filesystem::path();
}

/// Header partitions of real files; overridden by CORVID_SAMPLES. Empty if absent.
inline std::filesystem::path samplesDir() { return sharedDir("CORVID_SAMPLES", "samples"); }

/// The SMPTE registers as tables; overridden by CORVID_REGISTERS. Empty if absent.
inline std::filesystem::path registersDir() { return sharedDir("CORVID_REGISTERS", "registers"); }

/// Programs that CMake has found; empty if it has not.
inline std::string ffmpeg() { return CORVID_TEST_FFMPEG; }
inline std::string xmllint() { return CORVID_TEST_XMLLINT; }
inline std::string python() { return CORVID_TEST_PYTHON; }

/// An empty folder of this test's own, removed with everything in it at the end of the scope.
class TemporaryDir {
public:
    TemporaryDir() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() /
                    ("corvid-test-" + std::to_string(random()) + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    TemporaryDir(const TemporaryDir&) = delete;
    TemporaryDir& operator=(const TemporaryDir&) = delete;
    ~TemporaryDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const noexcept { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace Corvid::Testing
