// Writes the header metadata of many files as XML, FILE.mxf.xml for each, with a thread for each
// processor. The threads share the dictionary; every file and its metadata belong to one of them.
// A file that can't be converted does not stop the others.

#include "editing/WriteDocument.h"
#include "host/base/ExceptionText.h"
#include "host/dataio/FileSink.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/File.h"

#include <algorithm>
#include <atomic>
#include <iostream>
#include <mutex>
#include <thread>
#include <vector>

using namespace Corvid;

namespace {

/// Prints whole lines, from any thread.
class Messages {
public:
    void print(const std::string& line) {
        const std::lock_guard<std::mutex> locked(mutex_);
        std::cerr << line << '\n';
    }

private:
    std::mutex mutex_;
};

struct PrintWarnings : mxf::WarningSink {
    PrintWarnings(std::string path, Messages& messages)
        : path_(std::move(path)), messages_(messages) {}
    void warn(const mxf::Warning& warning) override {
        messages_.print(path_ + ": warning: " + warning.message());
    }

private:
    std::string path_;
    Messages& messages_;
};

/// @return whether it could be done.
bool convert(const std::string& path, Messages& messages) {
    try {
        PrintWarnings warnings(path, messages);
        mxf::File file(path, MetaMetadata::Dictionary::builtIn(), warnings);
        const mxf::HeaderMetadata header = file.readMetadata();
        DataIO::FileSink output(path + ".xml");
        Editing::writeDocument(*header.metadata, {}, output);
        output.commit();
        return true;
    } catch (...) {
        messages.print(path + ": " + Exceptions::currentMessage());
        return false;
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> paths(argv + 1, argv + argc);
    Messages messages;
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> failed{0};
    std::vector<std::thread> threads(std::max(1U, std::thread::hardware_concurrency()));
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            for (std::size_t i = next++; i < paths.size(); i = next++) {
                failed += convert(paths[i], messages) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return failed == 0 ? 0 : 1;
}
