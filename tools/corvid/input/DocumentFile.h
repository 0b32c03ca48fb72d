#pragma once

#include "host/base/Templates.h"
#include "host/dataio/DataSource.h"
#include "host/dataio/RandomAccessSource.h"

#include <cstddef>
#include <string>

namespace Corvid::Tool {

/// Whether a file has a partition pack where an MXF file has the first one.
/// @throws IOError  it can't be read.
bool isMxfFile(DataIO::RandomAccessSource& file);

/// A file that people say is a document.
class DocumentFile final : public DataIO::DataSource {
public:
    /// @param path  "-" is standard input.
    /// @throws IOError        it can't be read.
    /// @throws InvalidFormat  it is empty, or an MXF file.
    explicit DocumentFile(const std::string& path);
    /// The same of a file that is open.
    explicit DocumentFile(Templates::auto_ptr<DataIO::RandomAccessSource> file);

    std::size_t read(unsigned char* to, std::size_t count) override;
    std::uint64_t remaining() const override;

private:
    Templates::auto_ptr<DataIO::RandomAccessSource> file_;
    std::uint64_t position_ = 0;
};

} // namespace Corvid::Tool
