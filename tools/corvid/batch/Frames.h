#pragma once

#include "host/dataio/DataSink.h"
#include "tools/corvid/output/Output.h"

#include <cstddef>
#include <cstdint>

namespace Corvid::Tool {

/// What a working process says is a row of frames: a head, then as many bytes as it names.
struct FrameHead {
    enum Kind : std::uint32_t {
        result,  ///< for standard output
        message, ///< for standard error
        end,     ///< FileResult::Facts, then its error; the last frame about a file
    };
    std::uint32_t kind;
    std::uint32_t size;
};

/// Writes all bytes to a pipe.
/// @return false where nobody reads it.
bool writeAll(int pipe, const void* bytes, std::size_t count) noexcept;

/// Ends the process where nobody reads the pipe: then nobody waits for the work.
void sendFrame(int pipe, FrameHead::Kind kind, const unsigned char* bytes, std::size_t count);

/// Sends messages.
class MessageFrames final : public DataIO::DataSink {
public:
    explicit MessageFrames(int pipe) : pipe_(pipe) {}
    void write(const unsigned char* bytes, std::size_t count) override {
        sendFrame(pipe_, FrameHead::message, bytes, count);
    }

private:
    int pipe_;
};

/// Sends a result. People see it when the work on the file has ended, if it was committed.
class ResultFrames final : public Output {
public:
    explicit ResultFrames(int pipe) : pipe_(pipe) {}
    void write(const unsigned char* bytes, std::size_t count) override {
        sendFrame(pipe_, FrameHead::result, bytes, count);
    }
    void commit() override {}
    bool isHeldBack() const noexcept override { return true; }
    bool isTerminal() const noexcept override;

private:
    std::optional<struct stat> status() const override { return std::nullopt; }
    int pipe_;
};

} // namespace Corvid::Tool
