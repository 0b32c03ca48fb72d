#pragma once

#include "host/base/Templates.h"
#include "host/dataio/RandomAccessSource.h"

namespace Corvid::DataIO {

/// A source for several readers of the same bytes: what one has read is kept, and the others get it
/// from memory.
class CORVID_EXPORT ReadOnceSource final : public RandomAccessSource {
public:
    /// @param source  borrowed; must outlive the object, and must not change meanwhile.
    explicit ReadOnceSource(RandomAccessSource& source)
        : RandomAccessSource(source.name()), source_(source) {}
    ~ReadOnceSource() override;

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override;
    std::uint64_t size() override { return source_.size(); }
    std::uint64_t available(std::uint64_t offset, std::uint64_t count) override {
        return source_.available(offset, count);
    }

private:
    using Pieces = Templates::map<std::uint64_t, Templates::vector<unsigned char>>;

    void keep(std::uint64_t offset, const unsigned char* bytes, std::size_t count);

    RandomAccessSource& source_;
    Pieces pieces_; ///< by their offsets; none overlaps another
};

} // namespace Corvid::DataIO
