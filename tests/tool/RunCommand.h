#pragma once

#include "tests/support/MxfBuilder.h"
#include "tests/support/Paths.h"

#include <string>

namespace Corvid::Testing {

/// What a command left.
struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

/// A folder in which commands are run.
class Workshop {
public:
    /// Runs a line of the shell in the folder; "corvid" is the command under test. Environment
    /// variables that change its output are not passed on.
    Outcome run(const std::string& line) const;

    /// Makes a file in the folder.
    void write(const std::string& name, const Bytes& bytes) const;
    void write(const std::string& name, const std::string& text) const;
    std::string read(const std::string& name) const;
    bool has(const std::string& name) const;
    /// How many files and folders are in it, hidden ones included.
    std::size_t count() const;

    const std::filesystem::path& path() const noexcept { return folder_.path(); }

private:
    TemporaryDir folder_;
};

/// A file with small metadata that has nothing odd.
Bytes smallClip();

/// A file with a set that has no InstanceUID.
Bytes clipWithANamelessSet();

/// A file whose first Identification holds a company name of these code units.
Bytes clipWithCompany(std::u16string_view name);

} // namespace Corvid::Testing
