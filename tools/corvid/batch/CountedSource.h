#pragma once

#include "tools/corvid/batch/FileTask.h"
#include "tools/corvid/input/Clip.h"
#include "tools/corvid/terminal/Messages.h"

namespace Corvid::Tool {

/// Counts the bytes that are read of another source.
class CountedSource final : public DataIO::RandomAccessSource {
public:
    using Source = Templates::auto_ptr<DataIO::RandomAccessSource>;

    /// @param count  grows. Borrowed.
    CountedSource(Source source, std::uint64_t& count)
        : RandomAccessSource(source->name()), source_(std::move(source)), count_(count) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        const std::size_t read = source_->readAt(offset, to, count);
        count_ += read;
        return read;
    }
    std::uint64_t size() override { return source_->size(); }
    std::uint64_t available(std::uint64_t offset, std::uint64_t count) override {
        return source_->available(offset, count);
    }

private:
    Source source_;
    std::uint64_t& count_;
};

/// Opens the file that the options name, and notes in the task what is read of it and, of the task's
/// own file, the stamp.
/// @throws UsageError, IOError  as openClip().
inline CountedSource::Source openCounted(const ClipOptions& clip, FileTask& task) {
    std::optional<RemoteStamp> stamp;
    auto source = openClip(clip, task.messages, stamp);
    if (clip.path == task.path) {
        task.remote = std::move(stamp);
    }
    return CountedSource::Source(new CountedSource(std::move(source), task.bytesRead));
}

} // namespace Corvid::Tool
