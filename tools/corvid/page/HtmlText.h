#pragma once

#include "host/dataio/DataSink.h"

#include <string>
#include <string_view>

namespace Corvid::Tool {

/// Text as the content of an element of HTML.
std::string htmlText(std::string_view text);

/// Writes JSON into a script element of HTML: "<" becomes its escape, so that nothing in the data
/// ends the element or begins another. In JSON that character is inside strings only.
class HtmlJsonSink final : public DataIO::DataSink {
public:
    /// @param target  borrowed.
    explicit HtmlJsonSink(DataIO::DataSink& target) : target_(target) {}

    void write(const unsigned char* bytes, std::size_t count) override;

private:
    DataIO::DataSink& target_;
};

} // namespace Corvid::Tool
