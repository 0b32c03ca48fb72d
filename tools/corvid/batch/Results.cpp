#include "tools/corvid/batch/Results.h"

#include "tools/corvid/batch/Frames.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/remote/Address.h"
#include "tools/corvid/terminal/Messages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace Corvid::Tool {

void Spool::append(const unsigned char* bytes, std::size_t count) {
    if (!file_ && count <= mostInMemory - bytes_.size()) {
        bytes_.append(reinterpret_cast<const char*>(bytes), count);
        return;
    }
    if (!file_) {
        file_.reset(std::tmpfile());
    }
    if (!file_ || std::fwrite(bytes, 1, count, file_.get()) != count) {
        throw OutputError("a temporary file", "can't write", errno);
    }
}

void Spool::read(const std::function<void(const unsigned char*, std::size_t)>& take) {
    take(reinterpret_cast<const unsigned char*>(bytes_.data()), bytes_.size());
    if (!file_) {
        return;
    }
    if (std::fflush(file_.get()) != 0 || std::fseek(file_.get(), 0, SEEK_SET) != 0) {
        throw OutputError("a temporary file", "can't write", errno);
    }
    std::array<unsigned char, mostInMemory> piece{};
    while (const std::size_t got = std::fread(piece.data(), 1, piece.size(), file_.get())) {
        take(piece.data(), got);
    }
}

std::size_t Results::add(ListedFile file) {
    const std::size_t number = next_ + waiting_.size();
    waiting_.emplace(number, Waiting{{std::move(file), {}}});
    return number;
}

void Results::finish(std::size_t file, FileResult result) {
    Waiting& finished = waiting_.at(file);
    finished.about.result = std::move(result);
    finished.isFinished = true;
    while (!waiting_.empty() && waiting_.begin()->second.isFinished) {
        print(waiting_.begin()->second);
        waiting_.erase(waiting_.begin());
        ++next_;
    }
}

void Results::print(Waiting& file) {
    const FileResult& result = file.about.result;
    if (result.facts.isUnchanged) {
        return; // an earlier command has said everything
    }
    printFrames(file);
    if (!result.error.empty() && !result.isErrorTold) {
        messages_.error(shownName(file.about.file.path), result.error);
    }
    if (work_.count) {
        work_.count(result);
    }
    printed_(file.about);
}

void Results::printFrames(Waiting& file) {
    DescriptorOutput output(STDOUT_FILENO, "standard output");
    bool isAny = false;
    const auto write = [&](const unsigned char* bytes, std::size_t count) {
        if (output.isTerminal()) {
            messages_.showProgress("");
        }
        if (!std::exchange(isAny, true) && !std::exchange(isFirst_, false)) {
            output.write(reinterpret_cast<const unsigned char*>(work_.between.data()),
                         work_.between.size());
        }
        output.write(bytes, count);
    };
    std::string head;
    FrameHead frame{};
    std::size_t left = 0;
    file.spool.read([&](const unsigned char* bytes, std::size_t count) {
        while (count != 0) {
            std::size_t part = 0;
            if (left == 0) {
                part = std::min(count, sizeof frame - head.size());
                head.append(reinterpret_cast<const char*>(bytes), part);
                if (head.size() == sizeof frame) {
                    std::memcpy(&frame, head.data(), sizeof frame);
                    left = frame.size;
                    head.clear();
                }
            } else {
                part = std::min(count, left);
                left -= part;
                if (frame.kind == FrameHead::message) {
                    messages_.showProgress("");
                    messages_.write({reinterpret_cast<const char*>(bytes), part});
                } else if (file.about.result.facts.hasResult) {
                    write(bytes, part);
                }
            }
            bytes += part;
            count -= part;
        }
    });
    output.commit();
}

} // namespace Corvid::Tool
