#include "host/mxf/rewrite/disk/Journal.h"

#include "host/base/Exceptions.h"
#include "host/types/FixedBytes.h"

#include <algorithm>
#include <sodium/crypto_generichash.h>

namespace Corvid::mxf {

namespace {

constexpr std::array<Types::u8, 8> magic = {'C', 'o', 'r', 'v', 'i', 'd', 'R', 'J'};
constexpr Types::u64 version = 1;

/// The bytes at the front of a file by which it is known.
constexpr std::uint64_t frontSize = 65536;

Journal::Hash hashOf(Types::ByteView bytes) {
    Journal::Hash hash;
    crypto_generichash(hash.data(), hash.size(), bytes.data, bytes.size, nullptr, 0);
    return hash;
}

class Writer {
public:
    void take(Types::u64 number) {
        Types::u8 coded[sizeof number];
        Types::writeBigEndian(coded, number);
        append(bytes, {coded, sizeof coded});
    }
    void take(const ByteRanges& ranges) {
        take(ranges.size());
        for (const ByteRange& range : ranges) {
            take(range.offset);
            take(range.bytes.size());
            append(bytes, viewOf(range.bytes));
        }
    }

    Bytes bytes;
};

[[noreturn]] void refuse(const char* why) {
    throw Exceptions::InvalidFormat(std::string("the recovery file ") + why, CORVID_HERE);
}

class Reader {
public:
    explicit Reader(Types::ByteView bytes) : left_(bytes) {}

    Types::ByteView bytes(Types::u64 count) {
        if (count > left_.size) {
            refuse("ends too early");
        }
        const Types::ByteView result{left_.data, static_cast<std::size_t>(count)};
        left_.data += result.size;
        left_.size -= result.size;
        return result;
    }
    Types::u64 number() { return Types::readBigEndian<Types::u64>(bytes(sizeof(Types::u64)).data); }
    ByteRanges ranges() {
        ByteRanges result;
        for (Types::u64 count = number(); count != 0; --count) {
            ByteRange range;
            range.offset = number();
            append(range.bytes, bytes(number()));
            result.push_back(std::move(range));
        }
        return result;
    }

private:
    Types::ByteView left_;
};

/// The hash of a file's front without the bytes that change.
Journal::Hash frontOf(const OpenFile& file, std::uint64_t size, const ByteRanges& changes) {
    Bytes front = file.read(0, std::min(size, frontSize));
    for (const ByteRange& change : changes) {
        const std::uint64_t begin = std::min<std::uint64_t>(change.offset, front.size());
        const std::uint64_t end = std::min<std::uint64_t>(change.end(), front.size());
        std::fill(front.begin() + static_cast<std::ptrdiff_t>(begin),
                  front.begin() + static_cast<std::ptrdiff_t>(end), Types::u8{0});
    }
    return hashOf(viewOf(front));
}

} // namespace

Journal Journal::of(const OpenFile& file, const Rewrite& rewrite) {
    Journal journal;
    journal.status = file.status();
    journal.newSize = rewrite.newSize();
    if (!rewrite.insertions.empty() || rewrite.oldSize != journal.status.size) {
        throw Exceptions::InvalidArgument("the rewrite is not one of this file in place",
                                          CORVID_HERE);
    }
    for (const ByteRange& range : rewrite.writes) {
        const std::uint64_t end = std::min(range.end(), rewrite.oldSize);
        if (range.offset < end) {
            journal.before.push_back({range.offset, file.read(range.offset, end - range.offset)});
        }
    }
    journal.after = rewrite.writes;
    journal.front = frontOf(file, rewrite.oldSize, journal.after);
    return journal;
}

Bytes Journal::coded() const {
    Writer writer;
    append(writer.bytes, {magic.data(), magic.size()});
    writer.take(version);
    writer.take(status.size);
    writer.take(status.inode);
    writer.take(static_cast<Types::u64>(status.modified));
    writer.take(static_cast<Types::u64>(status.changed));
    writer.take(newSize);
    append(writer.bytes, {front.data(), front.size()});
    writer.take(before);
    writer.take(after);
    const Hash hash = hashOf(viewOf(writer.bytes));
    append(writer.bytes, {hash.data(), hash.size()});
    return std::move(writer.bytes);
}

Journal Journal::parse(const Bytes& bytes) {
    if (bytes.size() < magic.size() + sizeof(Hash) ||
        !std::equal(magic.begin(), magic.end(), bytes.begin())) {
        refuse("is none of Corvid");
    }
    const Types::ByteView content{bytes.data(), bytes.size() - sizeof(Hash)};
    const Hash hash = hashOf(content);
    if (!std::equal(hash.begin(), hash.end(), content.data + content.size)) {
        refuse("is damaged: its hash is not that of its content");
    }
    Reader reader(content);
    reader.bytes(magic.size());
    if (reader.number() != version) {
        refuse("is of another version of Corvid");
    }
    Journal journal;
    journal.status.size = reader.number();
    journal.status.inode = reader.number();
    journal.status.modified = static_cast<std::int64_t>(reader.number());
    journal.status.changed = static_cast<std::int64_t>(reader.number());
    journal.newSize = reader.number();
    const Types::ByteView front = reader.bytes(journal.front.size());
    std::copy_n(front.data, front.size, journal.front.begin());
    journal.before = reader.ranges();
    journal.after = reader.ranges();
    return journal;
}

bool Journal::isOf(const OpenFile& file) const {
    const FileStatus found = file.status();
    // While it is written, a file that becomes longer may have any size in between.
    return found.inode == status.inode && found.size >= status.size && found.size <= newSize &&
           frontOf(file, status.size, after) == front;
}

std::string Journal::pathFor(const std::string& path) {
    const auto slash = path.rfind('/');
    const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(0, name) + "." + path.substr(name) + ".corvid-recovery";
}

} // namespace Corvid::mxf
