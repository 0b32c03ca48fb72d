#pragma once

#include "tools/corvid/Output.h"

namespace Corvid::Tool {

/// A file that is written beside its target and takes that one's place when it is complete. Until
/// then it goes away with the object, and with the process where a signal ends it.
class FileOutput : public DescriptorOutput {
public:
    /// @param path  of a file, also one that is not there yet; a link to a file stays one.
    /// @throws OutputError  it may not be replaced, or nothing can be written beside it.
    explicit FileOutput(const std::string& path);
    ~FileOutput() override;

    void commit() override;
    bool isHeldBack() const noexcept override { return true; }
    bool replaces(const std::string& path) const override;

private:
    struct Target;
    struct Temporary;
    FileOutput(const std::string& path, const Target& target);
    FileOutput(const std::string& path, Target target, Temporary temporary);

    std::string target_;
    std::string temporary_; ///< empty when there is no such file any more
};

} // namespace Corvid::Tool
