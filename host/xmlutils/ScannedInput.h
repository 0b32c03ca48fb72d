#pragma once

#include <xercesc/sax/InputSource.hpp>

namespace Corvid::XMLUtils {

/// A document whose start tags are looked at before the parser gets them. The parser gets the bytes
/// unchanged up to a tag that is beyond a limit, and then, in place of the tag's end, a
/// xercesc::SAXParseException with the tag's line and column.
class ScannedInput final : public xercesc::InputSource {
public:
    /// @param document  borrowed, longer than the source and its streams.
    explicit ScannedInput(const xercesc::InputSource& document);

    xercesc::BinInputStream* makeStream() const override;

private:
    class Stream;

    const xercesc::InputSource& document_;
};

} // namespace Corvid::XMLUtils
