#include "host/base/ExceptionText.h"

#include "host/base/Exceptions.h"

#include <exception>
#include <new>

namespace Corvid::Exceptions {

std::string currentMessage() {
    try {
        throw;
    } catch (const BaseException& error) {
        return Platform::toUtf8(error.message());
    } catch (const std::bad_alloc&) {
        return "not enough memory";
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown exception";
    }
}

} // namespace Corvid::Exceptions
