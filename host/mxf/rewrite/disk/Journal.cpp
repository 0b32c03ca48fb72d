#include "host/mxf/rewrite/disk/Journal.h"

#include "host/base/Exceptions.h"
#include "host/mxf/rewrite/disk/Blocks.h"
#include "host/types/FixedBytes.h"

#include <algorithm>
#include <sodium/crypto_generichash.h>

namespace Corvid::mxf {

namespace {

constexpr std::array<Types::u8, 8> magic = {'C', 'o', 'r', 'v', 'i', 'd', 'R', 'J'};
constexpr Types::u64 version = 1;

/// The bytes at the front of a file by which it is known.
constexpr std::uint64_t frontSize = 32768;

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

    void take(const DataRuns& runs) {
        take(runs.size());
        for (const DataRun& run : runs) {
            take(run.begin);
            take(run.end);
        }
    }

    /// Adds the hash of the bytes from a place on.
    void takeHash(std::size_t from = 0) {
        const Journal::Hash hash = hashOf({bytes.data() + from, bytes.size() - from});
        append(bytes, {hash.data(), hash.size()});
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
    /// Bytes that their hash follows; nothing where it is that of others.
    std::optional<Types::ByteView> hashed(Types::u64 count) {
        const Types::ByteView content = bytes(count);
        const Types::ByteView found = bytes(sizeof(Journal::Hash));
        const Journal::Hash hash = hashOf(content);
        return std::equal(hash.begin(), hash.end(), found.data) ? std::optional(content)
                                                                : std::nullopt;
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
    DataRuns runs() {
        DataRuns result;
        for (Types::u64 count = number(); count != 0; --count) {
            const Types::u64 begin = number();
            result.push_back({begin, number()});
        }
        return result;
    }

private:
    Types::ByteView left_;
};

/// The hash of a file's front without the bytes that change.
Journal::Hash frontOf(const OpenFile& file, const Journal& journal) {
    std::uint64_t size = std::min(journal.status.size, frontSize);
    if (journal.insertion.size != 0) {
        size = std::min(size, journal.insertion.offset);
    }
    Bytes front = file.read(0, size);
    for (const ByteRange& change : journal.after) {
        const std::uint64_t begin = std::min<std::uint64_t>(change.offset, front.size());
        const std::uint64_t end = std::min<std::uint64_t>(change.end(), front.size());
        std::fill(front.begin() + static_cast<std::ptrdiff_t>(begin),
                  front.begin() + static_cast<std::ptrdiff_t>(end), Types::u8{0});
    }
    return hashOf(viewOf(front));
}

/// Adds the bytes of a file between two offsets, as far as they are there.
void addBefore(ByteRanges& before, const OpenFile& file, std::uint64_t begin, std::uint64_t end,
               std::uint64_t size) {
    end = std::min(end, size);
    if (begin < end) {
        before.push_back({begin, file.read(begin, end - begin)});
    }
}

} // namespace

Journal Journal::of(const OpenFile& file, const Rewrite& rewrite) {
    Journal journal;
    journal.status = file.status();
    journal.newSize = rewrite.newSize();
    if (rewrite.insertions.size() > 1 || rewrite.oldSize != journal.status.size) {
        throw Exceptions::InvalidArgument("the rewrite is not one of this file in place",
                                          CORVID_HERE);
    }
    if (!rewrite.insertions.empty()) {
        journal.insertion = rewrite.insertions.front();
        journal.data = dataFrom(file, journal.insertion.offset);
        if (journal.data.size() > greatestRuns) {
            throw Exceptions::LimitExceeded("the file has more than " +
                                                std::to_string(greatestRuns) + " runs of data",
                                            CORVID_HERE);
        }
    }
    const std::uint64_t begin = journal.insertion.offset;
    const std::uint64_t size = journal.insertion.size;
    const std::uint64_t oldSize = rewrite.oldSize;
    for (const ByteRange& range : rewrite.writes) {
        if (size == 0) {
            addBefore(journal.before, file, range.offset, range.end(), oldSize);
        } else {
            addBefore(journal.before, file, range.offset, std::min(range.end(), begin), oldSize);
            if (range.end() > begin + size) {
                addBefore(journal.before, file, std::max(range.offset, begin + size) - size,
                          range.end() - size, oldSize);
            }
        }
    }
    journal.after = rewrite.writes;
    // A write makes a hole two, an insertion as well.
    journal.mostRuns = journal.data.size() + rewrite.writes.size() + 2;
    journal.front = frontOf(file, journal);
    return journal;
}

/// What does not change while the file does.
Bytes Journal::codedBody() const {
    Writer content;
    append(content.bytes, {magic.data(), magic.size()});
    content.take(version);
    const std::size_t head = content.bytes.size();
    content.take(Types::u64{0});
    content.take(status.size);
    content.take(status.inode);
    content.take(static_cast<Types::u64>(status.modified));
    content.take(static_cast<Types::u64>(status.changed));
    content.take(newSize);
    append(content.bytes, {front.data(), front.size()});
    content.take(before);
    content.take(after);
    content.take(insertion.offset);
    content.take(insertion.size);
    content.take(mostRuns);
    Types::writeBigEndian(content.bytes.data() + head,
                          Types::u64{content.bytes.size() - head - sizeof(Types::u64)});
    content.takeHash(head + sizeof(Types::u64));
    return std::move(content.bytes);
}

std::size_t Journal::phaseRoom() const noexcept {
    constexpr std::size_t numbers = 2;
    constexpr std::size_t runSize = 2 * sizeof(Types::u64);
    return numbers * sizeof(Types::u64) + static_cast<std::size_t>(mostRuns) * runSize +
           sizeof(Hash);
}

ByteRange Journal::codedPhase() const {
    if (data.size() > mostRuns) {
        throw Exceptions::LimitExceeded("the recovery file has room for " +
                                            std::to_string(mostRuns) + " runs of data, found " +
                                            std::to_string(data.size()),
                                        CORVID_HERE);
    }
    Writer content;
    content.take(static_cast<Types::u64>(phase));
    content.take(data);
    content.bytes.resize(phaseRoom() - sizeof(Hash));
    content.takeHash();
    return {codedBody().size() + static_cast<std::size_t>(phase) * phaseRoom(),
            std::move(content.bytes)};
}

Bytes Journal::coded() const {
    Bytes bytes = codedBody();
    if (insertion.size != 0) {
        const ByteRange now = codedPhase();
        bytes.resize(bytes.size() + phaseCount * phaseRoom());
        std::copy(now.bytes.begin(), now.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(now.offset));
    }
    return bytes;
}

Journal Journal::parse(const Bytes& bytes) {
    Reader file(viewOf(bytes));
    if (bytes.size() < magic.size() || !std::equal(magic.begin(), magic.end(), bytes.begin())) {
        refuse("is none of Corvid");
    }
    file.bytes(magic.size());
    if (file.number() != version) {
        refuse("is of another version of Corvid");
    }
    const auto content = file.hashed(file.number());
    if (!content) {
        refuse("is damaged: its hash is not that of its content");
    }
    Reader body(*content);
    Journal journal;
    journal.status.size = body.number();
    journal.status.inode = body.number();
    journal.status.modified = static_cast<std::int64_t>(body.number());
    journal.status.changed = static_cast<std::int64_t>(body.number());
    journal.newSize = body.number();
    const Types::ByteView front = body.bytes(journal.front.size());
    std::copy_n(front.data, front.size, journal.front.begin());
    journal.before = body.ranges();
    journal.after = body.ranges();
    journal.insertion.offset = body.number();
    journal.insertion.size = body.number();
    journal.mostRuns = body.number();
    if (journal.insertion.size == 0) {
        return journal;
    }
    if (journal.mostRuns > bytes.size()) {
        refuse("ends too early");
    }
    bool hasPhase = false;
    for (std::size_t i = 0; i != phaseCount; ++i) {
        // The next phase may be there in part; then it has not begun.
        if (const auto coded = file.hashed(journal.phaseRoom() - sizeof(Hash))) {
            Reader phase(*coded);
            journal.phase = static_cast<Phase>(phase.number());
            journal.data = phase.runs();
            hasPhase = true;
        }
    }
    if (!hasPhase) {
        refuse("is damaged: it does not say how far the change is");
    }
    return journal;
}

bool Journal::isOf(const OpenFile& file) const {
    const FileStatus found = file.status();
    // While it is written, a file that becomes longer may have any size in between.
    return found.inode == status.inode && found.size >= status.size && found.size <= newSize &&
           frontOf(file, *this) == front;
}

std::string Journal::pathFor(const std::string& path) {
    const auto slash = path.rfind('/');
    const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(0, name) + "." + path.substr(name) + ".corvid-recovery";
}

} // namespace Corvid::mxf
