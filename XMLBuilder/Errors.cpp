#include "XMLBuilder/Errors.h"

#include "host/base/Exceptions.h"

#include <string>

namespace Corvid::XMLBuilder {

namespace {

std::string messageOf(const char* condition, const char* explanation) {
    return std::string(condition) + ": " + explanation;
}

} // namespace

void throwInvalidFormat(const char* condition, const char* explanation, const char* file,
                        int line) {
    throw Exceptions::InvalidFormat(messageOf(condition, explanation).c_str(), file, line);
}

void throwInvalidLength(const char* condition, const char* explanation, const char* file,
                        int line) {
    throw Exceptions::InvalidLength(messageOf(condition, explanation).c_str(), file, line);
}

} // namespace Corvid::XMLBuilder
