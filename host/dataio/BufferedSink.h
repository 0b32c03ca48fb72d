#pragma once

#include "host/dataio/DataSink.h"

#include <vector>

namespace Corvid::DataIO {

/// Hands bytes on in large pieces, for sinks to which every write is dear.
class CORVID_EXPORT BufferedSink : public DataSink {
public:
    /// @param target  is borrowed.
    explicit BufferedSink(DataSink& target) : target_(target) { bytes_.reserve(capacity); }
    BufferedSink(const BufferedSink&) = delete;
    BufferedSink& operator=(const BufferedSink&) = delete;

    void write(const unsigned char* bytes, std::size_t count) override;

    /// Hands on what is left. To be called at the end: an object that goes away keeps what it has.
    void flush();

private:
    static constexpr std::size_t capacity = std::size_t{64} * 1024;

    DataSink& target_;
    std::vector<unsigned char> bytes_;
};

} // namespace Corvid::DataIO
