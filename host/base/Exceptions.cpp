#include "host/base/Exceptions.h"

namespace Corvid::Exceptions {

BaseException::BaseException(const char* message, const char* file, int line)
    : message_(Platform::widen(message)), file_(file), line_(line) {}

BaseException::BaseException(const unsigned short* message, const char* file, int line)
    : message_(message), file_(file), line_(line) {}

BaseException::BaseException(const BaseException& other) = default;

BaseException::~BaseException() = default;

const unsigned short* BaseException::message() const { return message_.c_str(); }

const unsigned short* BaseException::what() const { return message_.c_str(); }

} // namespace Corvid::Exceptions
