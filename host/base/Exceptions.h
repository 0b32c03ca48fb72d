#pragma once

#include "Corvid/Export.h"
#include "host/base/Text.h"

#include <string>

namespace Corvid::Exceptions {

/// The root of everything that Corvid throws for a reason of its own. Thrown by value, caught by
/// const reference; no std::exception.
class CORVID_EXPORT BaseException {
public:
    /// @param message  8-bit text, widened code by code.
    /// @param file     name of the source that throws; 8-bit text with static storage.
    BaseException(const char* message, const char* file, int line);
    BaseException(const unsigned short* message, const char* file, int line);
    BaseException(const BaseException& other);
    BaseException& operator=(const BaseException& other) = delete;
    virtual ~BaseException();

    /// The message alone. Zero-terminated, lives as long as the exception.
    virtual const unsigned short* message() const;

    /// The same text as message(): file() and line() are for developers.
    virtual const unsigned short* what() const;

    /// The number of the concrete class; each class has one of its own.
    virtual unsigned int code() const = 0;

    const char* file() const noexcept { return file_; }
    int line() const noexcept { return line_; }

private:
    Utf16Text message_;
    const char* file_;
    int line_;
};

// The family: one row per class, with its kind number and what it says.
//   CORVID_EXCEPTION(Class, code)
// clang-format off
#define CORVID_EXCEPTION_FAMILY(CORVID_EXCEPTION)                                                  \
    CORVID_EXCEPTION(InvalidFormat, 8)     /* data or text does not have the form that it must */  \
    CORVID_EXCEPTION(InvalidLength, 9)     /* a length or size contradicts what it measures */     \
    CORVID_EXCEPTION(InvalidArgument, 10)  /* a caller's argument can't be used */                 \
    CORVID_EXCEPTION(InvalidDictionary, 11)/* a dictionary's text breaks a rule of its format */   \
    CORVID_EXCEPTION(LimitExceeded, 12)    /* the data is sound, but beyond a documented limit */  \
    CORVID_EXCEPTION(IOError, 13)          /* a file can't be opened, read or written */           \
    CORVID_EXCEPTION(ParseError, 33)       /* an XML document could not be parsed or understood */
// clang-format on

#define CORVID_DECLARE_EXCEPTION(Class, Code)                                                      \
    class CORVID_EXPORT Class : public BaseException {                                             \
    public:                                                                                        \
        using BaseException::BaseException;                                                        \
        Class(const std::string& message, const char* file, int line)                              \
            : BaseException(Platform::fromUtf8(message).c_str(), file, line) {}                    \
        unsigned int code() const override { return Code; }                                        \
    };
CORVID_EXCEPTION_FAMILY(CORVID_DECLARE_EXCEPTION)
#undef CORVID_DECLARE_EXCEPTION

} // namespace Corvid::Exceptions

/// The place of a throw, as the last two arguments of an exception's constructor.
#define CORVID_HERE __FILE__, __LINE__
