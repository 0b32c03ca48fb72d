#pragma once

#include "host/dataio/DataSink.h"
#include "host/mxf/Warnings.h"

#include <string>
#include <string_view>

namespace Corvid::Tool {

/// Tells people what happens, a line each: "corvid: file: message". Also the sink for the warnings
/// of the library.
class Messages : public mxf::WarningSink {
public:
    /// @param sink     receives the lines, as a rule standard error. Borrowed.
    /// @param colours   whether the kind of a message is coloured.
    /// @param terminal  whether the sink is one, so that a line can be taken back.
    Messages(DataIO::DataSink& sink, bool colours, bool terminal = false)
        : sink_(sink), colours_(colours), terminal_(terminal) {}

    /// Names the file that all that follows is about; "-" is standard input.
    void setFile(const std::string& path);
    /// What people call it.
    const std::string& file() const noexcept { return file_; }

    /// Says what ends the work.
    void error(std::string_view text);
    /// The same about another file than the one at work, or none.
    void error(std::string_view file, std::string_view text);
    /// Says what is not as it should be, though the work goes on.
    void warning(std::string_view text);
    /// Says what people may want to know.
    void note(std::string_view text);
    /// "corvid: file: warning: byte 4132: set Preface: property 3b.02 LastModified: ..."
    void warn(const mxf::Warning& warning) override;

    /// Shows on a terminal, and nowhere else, how far the work is, until the next message or the
    /// next call.
    /// @param text  shorter than a line; empty takes the last one away.
    void showProgress(std::string_view text);
    bool showsProgress() const noexcept { return terminal_; }

    /// What the last error was about, without file; empty where there was none.
    const std::string& lastError() const noexcept { return lastError_; }
    /// How many warnings there were.
    std::size_t warnings() const noexcept { return warnings_; }

private:
    void line(std::string_view file, std::string_view colour, std::string_view kind,
              std::string_view text);

    void write(std::string_view text);

    DataIO::DataSink& sink_;
    bool colours_;
    bool terminal_;
    bool progressIsShown_ = false;
    std::string lastError_;
    std::string file_;
    std::size_t warnings_ = 0;
};

} // namespace Corvid::Tool
