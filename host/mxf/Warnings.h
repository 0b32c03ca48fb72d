#pragma once

#include "Corvid/Export.h"
#include "host/types/DataType.h"

#include <optional>
#include <string>

namespace Corvid::mxf {

/// Which repeats of a warning are one fact, to be shown once and counted.
enum class WarningScope : unsigned char {
    file,     ///< all in a file
    set,      ///< those about sets of one class
    property, ///< those about one property
    each,     ///< none: every one is a fact of its own
};

/// A kind of warning. Callers that have warnings of their own make constants of this type.
struct WarningKind {
    const char* code; ///< unique, such as "primer-lacks-tag"; compared letter by letter
    WarningScope scope;
    const char* summary; ///< one sentence; UTF-8, as the code is
};

/// The kinds of this library.
namespace WarningKinds {
#define CORVID_WARNING(name, code, scope, summary) CORVID_EXPORT extern const WarningKind name;
#include "host/mxf/WarningKinds.def"
} // namespace WarningKinds

/// Something in a file that is not as it should be, and what the library makes of it.
struct CORVID_EXPORT Warning {
    /// @param what  must outlive the warning.
    Warning(const WarningKind& what, std::string line) : kind(&what), text(std::move(line)) {}

    const WarningKind* kind;             ///< never null
    std::string text;                    ///< UTF-8, one line, no final stop
    std::optional<std::uint64_t> offset; ///< in bytes from the front of the file
    std::string set; ///< name of the set, or its key if it has none; may be empty
    std::optional<Types::u16> localTag; ///< of the property
    std::string property;               ///< name of the property; may be empty

    /// All of it on one line:
    /// "byte 4132: set Preface: property 3b.02 LastModified: too short, and 2 more [unfit-value]".
    /// @param more  how many others of its kind and scope the line is about.
    std::string message(std::size_t more = 0) const;
};

/// Receives what is wrong with a file. The library itself prints nothing.
class CORVID_EXPORT WarningSink {
public:
    virtual ~WarningSink();
    virtual void warn(const Warning& warning) = 0;
};

/// For callers that ignore warnings.
class CORVID_EXPORT NoWarnings : public WarningSink {
public:
    void warn(const Warning&) override {}
};

} // namespace Corvid::mxf
