#include "tests/support/Paths.h"

#include <cstdlib>
#include <random>
#include <system_error>

namespace Corvid::Testing {

namespace {

std::filesystem::path sharedDir(const char* variable, const char* name) {
    const char* const given = std::getenv(variable);
    const std::filesystem::path path =
        given != nullptr ? std::filesystem::path(given) : sourceDir() / ".." / "shared" / name;
    return std::filesystem::is_directory(path) ? path.lexically_normal() : std::filesystem::path();
}

} // namespace

std::filesystem::path sourceDir() { return CORVID_TEST_SOURCE_DIR; }
std::filesystem::path binaryDir() { return CORVID_TEST_BINARY_DIR; }
std::filesystem::path samplesDir() { return sharedDir("CORVID_SAMPLES", "samples"); }
std::filesystem::path registersDir() { return sharedDir("CORVID_REGISTERS", "registers"); }

std::string ffmpeg() { return CORVID_TEST_FFMPEG; }
std::string xmllint() { return CORVID_TEST_XMLLINT; }
std::string python() { return CORVID_TEST_PYTHON; }

TemporaryDir::TemporaryDir() {
    std::random_device random;
    do {
        path_ = std::filesystem::temp_directory_path() /
                ("corvid-test-" + std::to_string(random()) + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
}

TemporaryDir::~TemporaryDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace Corvid::Testing
