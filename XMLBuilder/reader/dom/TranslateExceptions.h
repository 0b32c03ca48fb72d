#pragma once

#include "XMLBuilder/CallerContract.h"

namespace Corvid::XMLBuilder {

/// The way in that a failure is told of; the number is the line that callers are told.
enum class EntryPoint : int {
    buffer = CallerContract::Line::readBuffer,
    string = CallerContract::Line::readString,
    file = CallerContract::Line::readFile,
};

/// Throws the exception that is being handled as one of ours: those of Xerces-C, of XQilla and
/// unknown ones as ParseError, our own unchanged. To be called in a handler only.
[[noreturn]] void rethrowTranslated(EntryPoint entryPoint);

/// Calls the body; its exceptions come out translated.
template <class Body> auto translated(EntryPoint entryPoint, Body body) {
    try {
        return body();
    } catch (...) {
        rethrowTranslated(entryPoint);
    }
}

} // namespace Corvid::XMLBuilder
