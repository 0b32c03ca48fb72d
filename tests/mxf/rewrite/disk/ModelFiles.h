#pragma once

#include "host/base/Exceptions.h"
#include "host/mxf/rewrite/disk/FileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace Corvid::Testing {

/// Bytes that differ from their neighbours, for the content of files.
inline mxf::Bytes pattern(std::size_t size) {
    mxf::Bytes bytes(size);
    for (std::size_t i = 0; i != size; ++i) {
        bytes[i] = static_cast<Types::u8>(i * 7 + 1);
    }
    return bytes;
}

/// What is on a disk: names, with their folders, and files by their numbers.
struct Disk {
    std::map<std::string, std::uint64_t> names;
    std::map<std::uint64_t, mxf::Bytes> files;
    /// The numbers of the blocks of each file that are holes, and zeros.
    std::map<std::uint64_t, std::set<std::uint64_t>> holes;

    const mxf::Bytes& content(const std::string& name) const { return files.at(names.at(name)); }

    friend bool operator<(const Disk& a, const Disk& b) {
        return std::tie(a.names, a.files, a.holes) < std::tie(b.names, b.files, b.holes);
    }
};

/// What the model throws where the machine dies. It is none of the library's exceptions, so nothing
/// is done about it.
struct Crash {};

/// A file system in memory that forgets what was not synced.
///
/// Every change waits, cut into sectors, until the file or the folder is synced. When the machine
/// dies, any part of what waits is on the disk.
class ModelFiles : public mxf::FileSystem {
public:
    static constexpr std::uint64_t sectorSize = 16;
    static constexpr std::uint64_t blockSize = 32;
    /// Whether blocks can be inserted.
    bool inserts = true;

    /// Whether another program has locked every file.
    bool isLocked = false;
    /// The machine dies in the call with this number, from 1; 0 for never.
    std::size_t dieAt = 0;
    /// The sync with this number, from 1, does nothing; 0 for none.
    std::size_t syncThatLies = 0;
    /// The call with this number, from 1, fails as on a full disk; 0 for none.
    std::size_t failAt = 0;
    /// All calls from failAt on fail.
    bool failsOn = false;
    /// From the call with this number on, the disk is full: no file is made, and only what is there
    /// is overwritten; 0 for never.
    std::size_t fullAt = 0;
    std::size_t calls = 0; ///< those that change something
    std::size_t syncs = 0;
    std::size_t lookups = 0; ///< of data between holes

    explicit ModelFiles(Disk disk) : durable_(disk), now_(std::move(disk)) {}

    const Disk& now() const { return now_; }

    /// What may be on the disk if the machine dies: nothing of what waits, all, all but one change,
    /// one change, the first ones, and any others.
    std::set<Disk> images(unsigned others = 30) const {
        std::set<Disk> result;
        const std::size_t count = waiting_.size();
        const auto add = [&](auto takes) {
            Disk disk = durable_;
            for (std::size_t i = 0; i != count; ++i) {
                if (takes(i)) {
                    apply(disk, waiting_[i]);
                }
            }
            result.insert(std::move(disk));
        };
        add([](std::size_t) { return true; });
        add([](std::size_t) { return false; });
        for (std::size_t one = 0; one != count; ++one) {
            add([one](std::size_t i) { return i == one; });
            add([one](std::size_t i) { return i != one; });
            add([one](std::size_t i) { return i < one; });
        }
        // Blocks move in steps, of which some are done.
        for (std::size_t one = 0; one != count; ++one) {
            const Op& op = waiting_[one];
            if (op.kind == Op::Kind::insert || op.kind == Op::Kind::collapse) {
                Disk begun = durable_;
                for (std::size_t i = 0; i != one; ++i) {
                    apply(begun, waiting_[i]);
                }
                const std::uint64_t blocks = blocksIn(begun.files[op.file].size());
                for (std::uint64_t hole = op.offset / blockSize; hole <= blocks; ++hole) {
                    Disk disk = begun;
                    moveBlocks(disk, op, hole);
                    result.insert(std::move(disk));
                }
            }
        }
        std::mt19937 random(static_cast<unsigned>(count));
        for (unsigned i = 0; i != (count < 2 ? 0 : others); ++i) {
            add([&](std::size_t) { return random() % 2 == 0; });
        }
        return result;
    }

    std::string resolve(const std::string& path) override { return path; }

    std::optional<mxf::FileStatus> find(const std::string& path) override {
        const auto found = now_.names.find(path);
        return found == now_.names.end() ? std::nullopt : std::optional(statusOf(found->second));
    }

    int open(const std::string& path, Access access) override {
        const auto found = now_.names.find(path);
        if (access == Access::create || access == Access::share) {
            step();
            requireRoom(true);
            if (found != now_.names.end()) {
                fail("can't make " + path);
            }
            const std::uint64_t file =
                std::max(durable_.files.empty() ? 0 : durable_.files.rbegin()->first,
                         now_.files.rbegin()->first) +
                1;
            // An empty file is there at once, its name is not.
            durable_.files[file];
            now_.files[file];
            wait({Op::Kind::name, file, 0, {}, 0, path, {}});
            return static_cast<int>(file);
        }
        if (found == now_.names.end()) {
            fail("can't open " + path);
        }
        return static_cast<int>(found->second);
    }
    void close(int) noexcept override {}
    void lock(int) override {
        if (isLocked) {
            fail("another program has the lock");
        }
    }
    void lease(int) override {}
    mxf::FileStatus status(int file) override { return statusOf(static_cast<std::uint64_t>(file)); }

    std::size_t readAt(int file, std::uint64_t offset, Types::u8* to, std::size_t count) override {
        const mxf::Bytes& bytes = at(file);
        const std::size_t from = std::min<std::size_t>(offset, bytes.size());
        const std::size_t got = std::min(count, bytes.size() - from);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), got, to);
        return got;
    }

    void writeAt(int file, std::uint64_t offset, Types::ByteView bytes) override {
        step();
        requireRoom(needsRoom(static_cast<std::uint64_t>(file), offset, bytes.size));
        for (std::size_t done = 0; done != bytes.size;) {
            const std::uint64_t place = offset + done;
            const auto count = static_cast<std::size_t>(
                std::min<std::uint64_t>(bytes.size - done, sectorSize - place % sectorSize));
            wait({Op::Kind::write,
                  static_cast<std::uint64_t>(file),
                  place,
                  mxf::Bytes(bytes.data + done, bytes.data + done + count),
                  0,
                  {},
                  {}});
            done += count;
        }
        ++times_[static_cast<std::uint64_t>(file)];
    }
    void resize(int file, std::uint64_t size) override {
        step();
        if (at(file).size() != size) {
            wait({Op::Kind::resize, static_cast<std::uint64_t>(file), 0, {}, size, {}, {}});
        }
    }
    void sync(int file) override {
        step();
        if (++syncs != syncThatLies) {
            settle([file](const Op& op) {
                return !op.isOfNames() && op.file == static_cast<std::uint64_t>(file);
            });
        }
    }
    std::uint64_t insertionBlock(int) override { return inserts ? blockSize : 0; }
    bool insert(int file, std::uint64_t offset, std::uint64_t size) override {
        step();
        if (!inserts) {
            ++times_[static_cast<std::uint64_t>(file)]; // as some file systems do
            return false;
        }
        EXPECT_EQ(offset % blockSize, 0U);
        EXPECT_EQ(size % blockSize, 0U);
        EXPECT_LT(offset, at(file).size());
        wait({Op::Kind::insert, static_cast<std::uint64_t>(file), offset, {}, size, {}, {}});
        return true;
    }
    void collapse(int file, std::uint64_t offset, std::uint64_t size) override {
        step();
        EXPECT_EQ(offset % blockSize, 0U);
        EXPECT_EQ(size % blockSize, 0U);
        EXPECT_LT(offset + size, at(file).size());
        wait({Op::Kind::collapse, static_cast<std::uint64_t>(file), offset, {}, size, {}, {}});
    }
    void clear(int file, std::uint64_t offset, std::uint64_t size) override {
        step();
        for (std::uint64_t done = 0; done != size; done += blockSize) {
            wait({Op::Kind::clear,
                  static_cast<std::uint64_t>(file),
                  offset + done,
                  {},
                  blockSize,
                  {},
                  {}});
        }
    }
    std::optional<mxf::DataRun> nextData(int file, std::uint64_t offset) override {
        ++lookups;
        const auto number = static_cast<std::uint64_t>(file);
        const auto found = now_.holes.find(number);
        const auto isData = [&](std::uint64_t block) {
            return found == now_.holes.end() || found->second.count(block) == 0;
        };
        const std::uint64_t blocks = blocksIn(at(file).size());
        std::uint64_t begin = offset / blockSize;
        while (begin < blocks && !isData(begin)) {
            ++begin;
        }
        std::uint64_t end = begin;
        while (end < blocks && isData(end)) {
            ++end;
        }
        return offset >= at(file).size() || begin >= blocks
                   ? std::nullopt
                   : std::optional(
                         mxf::DataRun{std::max(begin * blockSize, offset),
                                      std::min<std::uint64_t>(end * blockSize, at(file).size())});
    }
    void copyRange(int from, std::uint64_t offset, int to, std::uint64_t toOffset,
                   std::uint64_t size) override {
        const auto data = nextData(from, offset);
        --lookups;
        EXPECT_TRUE(data && data->begin == offset && data->end >= offset + size) << "not all data";
        mxf::Bytes bytes(size);
        readAt(from, offset, bytes.data(), bytes.size());
        writeAt(to, toOffset, mxf::viewOf(bytes));
    }
    void copyAttributes(int, int) override { step(); }

    void renameToNew(const std::string& from, const std::string& to) override {
        if (now_.names.count(to) != 0) {
            fail("can't rename to " + to);
        }
        renameOver(from, to);
    }
    void renameOver(const std::string& from, const std::string& to) override {
        step();
        wait({Op::Kind::name, now_.names.at(from), 0, {}, 0, to, from});
    }
    void remove(const std::string& path) override {
        step();
        wait({Op::Kind::name, 0, 0, {}, 0, {}, path});
    }
    void syncFolderOf(const std::string& path) override {
        step();
        if (++syncs != syncThatLies) {
            settle([folder = folderOf(path)](const Op& op) {
                return op.isOfNames() && folderOf(op.name.empty() ? op.gone : op.name) == folder;
            });
        }
    }

private:
    struct Op {
        enum class Kind : unsigned char { write, resize, clear, insert, collapse, name };
        Kind kind;
        std::uint64_t file;
        std::uint64_t offset;
        mxf::Bytes bytes;
        std::uint64_t size;
        std::string name; ///< that the file gets; may be empty
        std::string gone; ///< that is no longer there; may be empty

        bool isOfNames() const { return kind == Kind::name; }
    };

    static std::string folderOf(const std::string& path) {
        const auto slash = path.rfind('/');
        return slash == std::string::npos ? std::string() : path.substr(0, slash);
    }

    static std::uint64_t blocksIn(std::uint64_t size) { return (size + blockSize - 1) / blockSize; }

    static void putHole(Disk& disk, std::uint64_t number, std::uint64_t block, std::uint64_t size) {
        mxf::Bytes& file = disk.files[number];
        const auto place = std::min<std::uint64_t>(block * blockSize, file.size());
        file.insert(file.begin() + static_cast<std::ptrdiff_t>(place), size, Types::u8{0});
        std::set<std::uint64_t> holes;
        for (const std::uint64_t each : disk.holes[number]) {
            holes.insert(each < block ? each : each + size / blockSize);
        }
        for (std::uint64_t i = 0; i != size / blockSize; ++i) {
            holes.insert(block + i);
        }
        disk.holes[number] = holes;
    }

    static void takeOut(Disk& disk, std::uint64_t number, std::uint64_t offset,
                        std::uint64_t size) {
        mxf::Bytes& file = disk.files[number];
        const auto from = file.begin() + static_cast<std::ptrdiff_t>(offset);
        file.erase(from, from + static_cast<std::ptrdiff_t>(size));
        std::set<std::uint64_t> holes;
        for (const std::uint64_t each : disk.holes[number]) {
            if (each * blockSize < offset) {
                holes.insert(each);
            } else if (each * blockSize >= offset + size) {
                holes.insert(each - size / blockSize);
            }
        }
        disk.holes[number] = holes;
    }

    /// An insertion that has come to a block from the end, or a removal that has come to it from
    /// its place.
    static void moveBlocks(Disk& disk, const Op& op, std::uint64_t block) {
        if (op.kind == Op::Kind::collapse) {
            takeOut(disk, op.file, op.offset, op.size);
        }
        putHole(disk, op.file, std::min(block, blocksIn(disk.files[op.file].size())), op.size);
    }

    static void apply(Disk& disk, const Op& op) {
        switch (op.kind) {
        case Op::Kind::write: {
            mxf::Bytes& file = disk.files[op.file];
            file.resize(std::max<std::size_t>(file.size(), op.offset + op.bytes.size()));
            std::copy(op.bytes.begin(), op.bytes.end(),
                      file.begin() + static_cast<std::ptrdiff_t>(op.offset));
            disk.holes[op.file].erase(op.offset / blockSize);
            return;
        }
        case Op::Kind::resize: {
            mxf::Bytes& file = disk.files[op.file];
            for (std::uint64_t block = blocksIn(file.size()); block < blocksIn(op.size); ++block) {
                disk.holes[op.file].insert(block);
            }
            file.resize(op.size);
            auto& holes = disk.holes[op.file];
            holes.erase(holes.lower_bound(blocksIn(op.size)), holes.end());
            return;
        }
        case Op::Kind::clear: {
            mxf::Bytes& file = disk.files[op.file];
            for (std::uint64_t i = op.offset;
                 i < std::min<std::uint64_t>(op.offset + op.size, file.size()); ++i) {
                file[i] = 0;
            }
            if (op.offset < file.size()) {
                disk.holes[op.file].insert(op.offset / blockSize);
            }
            return;
        }
        case Op::Kind::insert:
            moveBlocks(disk, op, op.offset / blockSize);
            return;
        case Op::Kind::collapse:
            takeOut(disk, op.file, op.offset, op.size);
            return;
        case Op::Kind::name:
            disk.names.erase(op.gone);
            if (!op.name.empty()) {
                disk.names[op.name] = op.file;
            }
            return;
        }
    }

    void wait(Op op) {
        apply(now_, op);
        waiting_.push_back(std::move(op));
    }

    template <class Which> void settle(Which which) {
        std::vector<Op> left;
        for (const Op& op : waiting_) {
            if (which(op)) {
                apply(durable_, op);
            } else {
                left.push_back(op);
            }
        }
        waiting_ = std::move(left);
    }

    /// The machine dies when a call begins, so that all images of the call before are seen.
    void step() {
        ++calls;
        if (dieAt != 0 && calls >= dieAt) {
            throw Crash(); // what is called on the way out does nothing either
        }
        if (failAt != 0 && (calls == failAt || (failsOn && calls > failAt))) {
            fail("no space left");
        }
    }

    void requireRoom(bool isNeeded) const {
        if (isNeeded && fullAt != 0 && calls >= fullAt) {
            fail("no space left");
        }
    }
    bool needsRoom(std::uint64_t file, std::uint64_t offset, std::uint64_t size) const {
        bool isNeeded = offset + size > blocksIn(now_.files.at(file).size()) * blockSize;
        if (const auto holes = now_.holes.find(file); holes != now_.holes.end()) {
            const auto first = holes->second.lower_bound(offset / blockSize);
            isNeeded =
                isNeeded || (first != holes->second.end() && *first * blockSize < offset + size);
        }
        return isNeeded;
    }

    [[noreturn]] static void fail(const std::string& why) {
        throw Exceptions::IOError(why, CORVID_HERE);
    }

    const mxf::Bytes& at(int file) const { return now_.files.at(static_cast<std::uint64_t>(file)); }
    mxf::FileStatus statusOf(std::uint64_t file) const {
        mxf::FileStatus status;
        status.size = now_.files.at(file).size();
        status.inode = file;
        const auto time = times_.find(file);
        status.modified = status.changed = time == times_.end() ? 0 : time->second;
        return status;
    }

    Disk durable_;
    Disk now_;
    std::vector<Op> waiting_;
    std::map<std::uint64_t, std::int64_t> times_;
};

} // namespace Corvid::Testing
