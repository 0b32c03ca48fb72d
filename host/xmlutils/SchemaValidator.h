#pragma once

#include "Corvid_XMLUtils/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Corvid::XMLUtils {

/// One XML Schema document.
struct SchemaText {
    std::string fileName; ///< by which the others import it
    std::string text;     ///< in UTF-8
};

/// Something in a document that its schema does not allow.
struct ValidityError {
    unsigned long long line = 0; ///< from 1
    unsigned long long column = 0;
    std::string message;

    /// "line 4, column 12: ..."
    CORVID_XMLUTILS_EXPORT std::string describe() const;
};

/// Checks documents against XML Schema 1.0 with the validator of Xerces-C. Nothing is opened:
/// neither what a document nor what a schema names. One thread may use a validator at a time.
class CORVID_XMLUTILS_EXPORT SchemaValidator {
public:
    /// @param schemas  the first describes the root of documents; all that it imports, directly or
    ///                 not, must be among them.
    /// @throws InvalidFormat  they are no schemas; with file, line and reason.
    explicit SchemaValidator(const std::vector<SchemaText>& schemas);

    /// Reads a validator from compiled schemas, in a fraction of the time that compiling takes.
    /// @param bytes   the result of prepared(). Borrowed for the call.
    /// @param origin  the same number as was given to prepared().
    /// @return null if the bytes are damaged, of another origin or of another version of Xerces-C.
    static std::unique_ptr<SchemaValidator> fromPrepared(const unsigned char* bytes,
                                                         std::size_t length, std::uint64_t origin);

    SchemaValidator(const SchemaValidator&) = delete;
    SchemaValidator& operator=(const SchemaValidator&) = delete;
    ~SchemaValidator();

    /// Finds what is wrong with a document, in its order.
    /// @param bytes  of the document, in any encoding that loadDocumentFromBuffer reads. Borrowed.
    /// @param most   how many errors to return at the most, at least 1.
    /// @throws what loadDocumentFromBuffer throws for a document that is not well-formed or beyond
    /// a
    ///         limit.
    std::vector<ValidityError> validate(const unsigned char* bytes, std::size_t length,
                                        std::size_t most) const;

    /// The compiled schemas, to be kept for this machine and its Xerces-C.
    /// @param origin  a number for what the schemas were made of, by which stale bytes are noticed.
    std::string prepared(std::uint64_t origin) const;

private:
    struct State;

    explicit SchemaValidator(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace Corvid::XMLUtils
