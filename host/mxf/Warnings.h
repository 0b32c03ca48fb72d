#pragma once

#include "Corvid/Export.h"
#include "host/types/DataType.h"

#include <optional>
#include <string>

namespace Corvid::mxf {

/// Something in a file that is not as it should be, and what the library makes of it.
struct CORVID_EXPORT Warning {
    std::string text;                    ///< UTF-8, one line, no final stop
    std::optional<std::uint64_t> offset; ///< in bytes from the front of the file
    std::string set; ///< name of the set, or its key if it has none; may be empty
    std::optional<Types::u16> localTag; ///< of the property
    std::string property;               ///< name of the property; may be empty

    /// All of it on one line: "byte 4132: Preface: 3b.02 LastModifiedDate: ...".
    std::string message() const;
};

/// Is told what is wrong with a file. The library itself prints nothing.
class CORVID_EXPORT WarningSink {
public:
    virtual ~WarningSink();
    virtual void warn(const Warning& warning) = 0;
};

/// For callers who don't want to know.
class CORVID_EXPORT NoWarnings : public WarningSink {
public:
    void warn(const Warning&) override {}
};

} // namespace Corvid::mxf
