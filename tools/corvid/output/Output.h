#pragma once

#include "host/base/Exceptions.h"
#include "host/dataio/DataSink.h"
#include "host/dataio/FileDescriptor.h"

#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace Corvid::Tool {

/// A result can't be written.
class OutputError : public Exceptions::IOError {
public:
    /// @param target  what people call the file.
    /// @param errorNumber  of the operating system.
    OutputError(std::string target, const std::string& what, int errorNumber);
    ~OutputError() override;

    const std::string& target() const noexcept { return target_; }
    /// True where the reader of a pipe has gone, which is no failure.
    bool isClosedPipe() const noexcept { return closedPipe_; }
    /// True where nothing else can be written there, either.
    bool isDiskFull() const noexcept { return diskFull_; }

private:
    std::string target_;
    bool closedPipe_;
    bool diskFull_;
};

/// Where the result of a verb goes.
class Output : public DataIO::DataSink {
public:
    /// Opens a file, or what else has that name: a device, a pipe or a file that is open
    /// (/dev/stdout) is written to as it is; a file takes the place of the one that is there when
    /// it is complete.
    /// @param path  "-" is standard output.
    /// @throws OutputError  it can't be written.
    static std::unique_ptr<Output> open(const std::string& path);

    /// Ends the output: only then a file gets its name. What was written before goes away when the
    /// object does, unless it went to a pipe or a device.
    /// @throws OutputError  some of it can't be written.
    virtual void commit() = 0;

    /// True when nobody sees anything of it before commit().
    virtual bool isHeldBack() const noexcept = 0;

    /// True where what is written goes to the file of that name, or takes its place.
    /// @param path  of a file that is read; "-" is standard input.
    bool goesTo(const std::string& path) const;

    /// True where people see the bytes at once, who can't read all bytes.
    virtual bool isTerminal() const noexcept = 0;

private:
    /// Of the file that it goes to, or whose place it takes; nothing where there is none.
    virtual std::optional<struct stat> status() const = 0;
};

/// Writes to an open file of the operating system, at once.
class DescriptorOutput : public Output {
public:
    /// @param name  for messages.
    DescriptorOutput(DataIO::FileDescriptor file, std::string name)
        : file_(std::move(file)), name_(std::move(name)) {}
    /// Does not close it.
    DescriptorOutput(int borrowed, std::string name)
        : DescriptorOutput(DataIO::FileDescriptor::borrowing(borrowed), std::move(name)) {}

    void write(const unsigned char* bytes, std::size_t count) override;
    void commit() override;
    bool isHeldBack() const noexcept override { return false; }
    bool isTerminal() const noexcept override;

private:
    std::optional<struct stat> status() const override;

    DataIO::FileDescriptor file_;
    std::string name_;
};

/// Writes text as the whole result, or nothing where there is none.
/// @throws OutputError  it can't be written.
void writeWhole(Output& output, const std::string& text);

/// Writes text to standard output.
/// @throws OutputError  it can't be written.
void printText(const std::string& text);

} // namespace Corvid::Tool
