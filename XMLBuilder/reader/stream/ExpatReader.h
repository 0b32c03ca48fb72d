#pragma once

#include "XMLBuilder/reader/stream/SurrogateCheck.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct XML_ParserStruct;

namespace Corvid::DataIO {
class DataSource;
}

namespace Corvid::XMLBuilder {

/// Gets what expat finds in a document, in its order. Texts are UTF-8; names are as the document has
/// them.
class XmlEvents {
public:
    virtual ~XmlEvents() = default;

    /// @param attributes  name and value by turns, then null; namespace declarations included.
    virtual void startElement(const char* name, const char** attributes) = 0;
    virtual void endElement() = 0;
    virtual void characters(std::string_view text) = 0;
    virtual void instruction(const char* target, const char* data) = 0;

    /// The name of the innermost open element, for messages; empty outside of the root.
    virtual std::string innermost() const = 0;
};

/// Reads a document with expat, in blocks. Opens nothing else and refuses document types.
class ExpatReader {
public:
    explicit ExpatReader(XmlEvents& events) noexcept : events_(events) {}
    ExpatReader(const ExpatReader&) = delete;
    ExpatReader& operator=(const ExpatReader&) = delete;

    /// Reads a document; once.
    /// @throws ParseError  it is malformed, in an encoding but UTF-8, UTF-16, ISO 8859-1 and ASCII,
    ///                     or beyond a limit; the message has line and column. What the events
    ///                     throw.
    void read(DataIO::DataSource& source);

    /// Where the event at hand begins, from 1.
    std::size_t line() const;
    std::size_t column() const;
    /// @throws ParseError  with the place in front.
    [[noreturn]] void refuse(const std::string& what) const;

private:
    struct Free {
        void operator()(XML_ParserStruct* parser) const;
    };

    void start(const char* encoding);
    void feed(std::basic_string_view<unsigned char> front, DataIO::DataSource& source);
    [[noreturn]] void refuseSyntax() const;
    [[noreturn]] static void refuseAt(std::size_t line, std::size_t column,
                                      const std::string& what);

    /// Passes an event on; expat is C, so what it throws waits until the parse has stopped.
    template <class Body> void guarded(Body body) noexcept;
    static ExpatReader& self(void* data) { return *static_cast<ExpatReader*>(data); }

    XmlEvents& events_;
    std::unique_ptr<XML_ParserStruct, Free> parser_;
    std::exception_ptr failure_;
    std::string wrongEncoding_;
    std::optional<SurrogateCheck> surrogates_; ///< nothing where the document is not in UTF-16
    std::uint64_t count_ = 0;                  ///< of events
};

} // namespace Corvid::XMLBuilder
