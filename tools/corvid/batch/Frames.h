#pragma once

#include "host/dataio/DataSink.h"
#include "tools/corvid/batch/FileTask.h"
#include "tools/corvid/output/Output.h"

#include <cstddef>
#include <cstdint>

namespace Corvid::Tool {

/// What a working process says is a row of frames: a head, then as many bytes as it names.
struct FrameHead {
    enum Kind : std::uint32_t {
        result,  ///< for standard output
        message, ///< for standard error
        end,     ///< EndHead, version, error; the last frame about a file
    };
    std::uint32_t kind;
    std::uint32_t size;
};

/// The last frame begins with it.
struct EndHead {
    FileResult::Facts facts;
    std::uint32_t versionSize; ///< bytes of RemoteStamp::version; 0 where there is no stamp
    std::uint64_t remoteSize;  ///< RemoteStamp::size
};

/// What a process is to work on: a head, then a path and the version of a file that is done unless
/// its server has another one.
struct RequestHead {
    std::uint32_t pathSize;
    std::uint32_t versionSize; ///< 0 where it is not done
    std::uint64_t remoteSize;
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
