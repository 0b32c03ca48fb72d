#pragma once

#include <filesystem>
#include <string>

/// Where tests find what they need. Only Paths.cpp gets the build's folders, so that the objects of
/// all other sources are alike in every build folder and a compiler cache can share them.
namespace Corvid::Testing {

/// The root of the source tree.
std::filesystem::path sourceDir();

/// The root of the build tree.
std::filesystem::path binaryDir();

/// Header partitions of real files: CORVID_SAMPLES, else ../shared/samples. Empty if there is no
/// such folder; a test that needs it then skips.
std::filesystem::path samplesDir();

/// The SMPTE registers as tables: CORVID_REGISTERS, else ../shared/registers. Empty if absent.
std::filesystem::path registersDir();

/// Programs that CMake has found; empty if it has not.
std::string ffmpeg();
std::string xmllint();
std::string python();

/// An empty folder of this test's own, removed with everything in it at the end of the scope.
class TemporaryDir {
public:
    TemporaryDir();
    TemporaryDir(const TemporaryDir&) = delete;
    TemporaryDir& operator=(const TemporaryDir&) = delete;
    ~TemporaryDir();

    const std::filesystem::path& path() const noexcept { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace Corvid::Testing
