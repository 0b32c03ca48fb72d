#pragma once

#include "host/dataio/DataSink.h"
#include "tools/corvid/terminal/WarningLog.h"

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

    /// Names the file that all that follows is about; "-" is standard input. Warnings about the
    /// file before are written.
    void setFile(const std::string& path);
    /// What people call it.
    const std::string& file() const noexcept { return file_; }
    /// A message without the name of that file.
    std::string withoutFile(std::string_view text) const;

    /// Says what ends the work, after the warnings.
    void error(std::string_view text);
    /// The same about another file than the one at work, or none.
    void error(std::string_view file, std::string_view text);
    /// Says what people may want to know.
    void note(std::string_view text);
    /// Says what is about no file: "corvid: text".
    void say(std::string_view text) { line("", "", "", text); }
    /// Keeps what is not as it should be, though the work goes on. Repeats are counted, so the line
    /// is written when no more are to come: see flush().
    void warn(const mxf::Warning& warning) override;
    /// Writes the warnings that have not been written:
    /// "corvid: file: warning: byte 4132: set Preface: property 3b.02 LastModified: ... [code]"
    void flush();
    /// Keeps warnings from being written, for a verb that reports them itself; or not any more.
    void holdWarnings(bool held) noexcept { holdsWarnings_ = held; }
    /// Writes text for people as it is.
    void write(std::string_view text);

    /// Shows on a terminal, and nowhere else, how far the work is, until the next message or the
    /// next call.
    /// @param text  shorter than a line; empty takes the last one away.
    void showProgress(std::string_view text);
    bool showsProgress() const noexcept { return terminal_; }
    bool hasColours() const noexcept { return colours_; }

    /// What the last error was about, without file; empty where there was none.
    const std::string& lastError() const noexcept { return lastError_; }
    /// The warnings about the file at work.
    const WarningLog& warnings() const noexcept { return log_; }
    /// How many warnings there were about all files, repeats included.
    std::size_t warningCount() const noexcept { return warningCount_; }

private:
    void line(std::string_view file, std::string_view colour, std::string_view kind,
              std::string_view text);

    DataIO::DataSink& sink_;
    bool colours_;
    bool terminal_;
    bool progressIsShown_ = false;
    bool holdsWarnings_ = false;
    std::string lastError_;
    std::string file_;
    WarningLog log_;
    std::vector<std::size_t> written_; ///< the count of each entry of the log when it was written
    std::size_t warningCount_ = 0;
};

} // namespace Corvid::Tool
