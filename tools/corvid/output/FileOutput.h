#pragma once

#include "tools/corvid/output/Output.h"
#include "tools/corvid/output/TemporaryFile.h"

namespace Corvid::Tool {

/// A file that is written beside its target and takes that one's place when it is complete. Until
/// then it goes away with the object, and with the process.
class FileOutput : public DescriptorOutput {
public:
    /// @param path  of a file, also one that is not there yet; a link to a file stays one.
    /// @throws OutputError  it may not be replaced, or nothing can be written beside it.
    explicit FileOutput(const std::string& path,
                        TemporaryFile::Naming naming = TemporaryFile::Naming::late);

    void commit() override;
    bool isHeldBack() const noexcept override { return true; }

private:
    struct Target;
    FileOutput(const std::string& path, const Target& target, TemporaryFile::Naming naming);
    FileOutput(const std::string& path, const Target& target, std::unique_ptr<TemporaryFile> file);
    std::optional<struct stat> status() const override;

    std::string target_;
    std::unique_ptr<TemporaryFile> temporary_; ///< empty when it has taken the place
};

} // namespace Corvid::Tool
