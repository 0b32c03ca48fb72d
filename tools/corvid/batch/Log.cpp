#include "tools/corvid/batch/Log.h"

#include "host/base/Utf8.h"
#include "tools/corvid/remote/Address.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/UsageError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sodium/utils.h>
#include <sys/file.h>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

constexpr int base64Form = sodium_base64_VARIANT_ORIGINAL;

/// How the first line of a log begins.
std::string front() { return R"({"schema":)" + std::to_string(Log::schema) + R"(,"verb":")"; }

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = Platform::firstCharacter(text).length;
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

Json base64(const std::string& bytes) {
    std::string text(sodium_base64_ENCODED_LEN(bytes.size(), base64Form), '\0');
    ::sodium_bin2base64(text.data(), text.size(),
                        reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(),
                        base64Form);
    text.pop_back(); // a zero
    return text;
}

std::string fromBase64(const std::string& text) {
    std::string bytes(text.size(), '\0');
    std::size_t size = 0;
    const int failed =
        ::sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(),
                            text.data(), text.size(), nullptr, &size, nullptr, base64Form);
    bytes.resize(failed == 0 ? size : 0);
    return bytes;
}

/// A line of a log, as far as it says whether a file is done.
struct Line {
    std::string path;
    std::optional<FileStatus> status; ///< nothing where the file is not done
    std::optional<FileStamp> stamp;
    std::optional<RemoteStamp> remote;
    bool hasOutput = false;
    std::optional<FileStamp> output; ///< as it was written
    std::string options;
};

/// Nothing for a file that has to be tried again.
std::optional<FileStatus> doneStatusOf(const std::string& name) {
    for (const FileStatus each : {FileStatus::ok, FileStatus::different, FileStatus::refused}) {
        if (name == nameOf(each)) {
            return each;
        }
    }
    return std::nullopt;
}

/// Keys are added to logs: an older line may lack one.
std::optional<FileStamp> stampIn(const nlohmann::json& line, const char* size, const char* time) {
    return line.value(size, nlohmann::json()).is_null() ||
                   line.value(time, nlohmann::json()).is_null()
               ? std::nullopt
               : std::optional(FileStamp{line.at(size).get<std::uint64_t>(),
                                         line.at(time).get<std::int64_t>()});
}

/// Nothing for what is no line of a log, as a power failure may leave it.
std::optional<Line> parse(const std::string& text) {
    try {
        const auto json = nlohmann::json::parse(text);
        Line line;
        const auto& bytes = json.at("pathBytes");
        line.path = bytes.is_null() ? json.at("path").get<std::string>()
                                    : fromBase64(bytes.get<std::string>());
        line.options = json.at("options").get<std::string>();
        line.stamp = stampIn(json, "size", "mtimeNs");
        // What is not an address is not asked for, whatever a log says.
        const auto version = json.value("remoteVersion", nlohmann::json());
        if (version.is_string() && isAddress(line.path)) {
            line.remote = {json.at("size").get<std::uint64_t>(), version.get<std::string>()};
        }
        if (json.at("schema") == Log::schema && (line.stamp || line.remote)) {
            line.status = doneStatusOf(json.at("status").get<std::string>());
        }
        line.hasOutput = !json.at("output").is_null();
        line.output = stampIn(json, "outputSize", "outputMtimeNs");
        return line;
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

DataIO::FileDescriptor openLog(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        throw UsageError{path + ": a log has to be a file"};
    }
    auto file = DataIO::FileDescriptor::owning(
        ::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    if (!file.isOpen()) {
        throw OutputError(path, "can't write", errno);
    }
    // Not all file systems have locks.
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        throw UsageError{path + ": another process writes to this log"};
    }
    return file;
}

} // namespace

std::optional<FileStamp> stampOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return FileStamp{static_cast<std::uint64_t>(status.st_size),
                     status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}

Log::Log(const BatchOptions& options)
    : path_(options.log), verb_(options.verb), file_(openLog(path_)) {
    const std::string wanted = front();
    std::string found(wanted.size(), '\0');
    const ssize_t count = ::pread(file_.number(), found.data(), found.size(), 0);
    if (count < 0) {
        DataIO::throwSystemError("can't read the log " + path_, errno);
    }
    found.resize(static_cast<std::size_t>(count));
    if (found != wanted.substr(0, found.size())) {
        throw UsageError{path_ + ": a file is there that is not a log of corvid"};
    }
    cutTornLine();
    if (options.resumes) {
        readDone();
    }
}

void Log::cutTornLine() {
    off_t end = ::lseek(file_.number(), 0, SEEK_END);
    const off_t size = end;
    std::array<char, 4096> bytes{};
    while (end > 0) {
        const off_t begin = std::max<off_t>(0, end - static_cast<off_t>(bytes.size()));
        const ssize_t got =
            ::pread(file_.number(), bytes.data(), static_cast<std::size_t>(end - begin), begin);
        if (got <= 0) {
            DataIO::throwSystemError("can't read the log " + path_, errno);
        }
        const std::string_view text(bytes.data(), static_cast<std::size_t>(got));
        if (const auto at = text.rfind('\n'); at != std::string_view::npos) {
            end = begin + static_cast<off_t>(at) + 1;
            break;
        }
        end = begin;
    }
    if (end != size && ::ftruncate(file_.number(), end) != 0) {
        throw OutputError(path_, "can't write", errno);
    }
}

void Log::readDone() {
    std::ifstream file(path_, std::ios::binary);
    for (std::string text; std::getline(file, text);) {
        const auto line = parse(text);
        if (line && line->status) {
            done_[line->path] = {{*line->status, line->remote},
                                 line->stamp,
                                 line->hasOutput,
                                 line->output,
                                 line->options};
        } else if (line) {
            done_.erase(line->path);
        }
    }
    if (file.bad()) {
        DataIO::throwSystemError("can't read the log " + path_, errno);
    }
}

std::optional<DoneFile> Log::findDone(const ListedFile& file, const std::string& output) const {
    const auto found = done_.find(withoutSecrets(file.path));
    if (found == done_.end() || found->second.options != file.options) {
        return std::nullopt;
    }
    const Done& done = found->second;
    const bool maybeSame = isAddress(file.path) ? done.file.remote.has_value()
                                                : file.stamp && done.stamp == file.stamp;
    if (!maybeSame) {
        return std::nullopt;
    }
    const bool isThere =
        output.empty() || !done.hasOutput || (done.output && done.output == stampOf(output));
    return isThere ? std::optional(done.file) : std::nullopt;
}

void Log::add(const FinishedFile& file, const std::string& output) {
    constexpr double microseconds = 1e6;
    const std::string path = shownName(file.file.path);
    const auto& stamp = file.file.stamp;
    const FileResult::Facts& facts = file.result.facts;
    const std::string& error = file.result.error;
    const auto& remote = file.result.remote;
    const bool hasOutput = !output.empty() && facts.hasResult;
    const auto written = hasOutput ? stampOf(output) : std::nullopt;
    const Json line = {
        {"schema", schema},
        {"verb", verb_},
        {"path", path},
        {"pathBytes", isUtf8(path) ? Json(nullptr) : base64(path)},
        {"size", stamp    ? Json(stamp->size)
                 : remote ? Json(remote->size)
                          : Json(nullptr)},
        {"mtimeNs", stamp ? Json(stamp->mtimeNs) : Json(nullptr)},
        {"remoteVersion", remote ? Json(remote->version) : Json(nullptr)},
        {"options", file.file.options},
        {"status", nameOf(facts.status)},
        {"warnings", facts.warnings},
        {"bytesRead", facts.bytesRead},
        {"seconds", std::round(facts.seconds * microseconds) / microseconds},
        {"output", hasOutput ? Json(output) : Json(nullptr)},
        {"outputSize", written ? Json(written->size) : Json(nullptr)},
        {"outputMtimeNs", written ? Json(written->mtimeNs) : Json(nullptr)},
        {"error", error.empty() ? Json(nullptr) : Json(error)},
    };
    const std::string text = jsonLine(line) + "\n";
    const off_t size = ::lseek(file_.number(), 0, SEEK_END);
    try {
        DescriptorOutput(file_.number(), path_)
            .write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    } catch (const OutputError&) {
        // A line of which a part is there says nothing; where it stays, the next command cuts it.
        static_cast<void>(::ftruncate(file_.number(), size) == 0);
        throw;
    }
}

void Log::finish() {
    if (::fsync(file_.number()) != 0 && errno != EINVAL) {
        throw OutputError(path_, "can't write", errno);
    }
}

} // namespace Corvid::Tool
