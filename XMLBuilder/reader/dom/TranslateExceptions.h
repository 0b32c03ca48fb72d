#pragma once

#include "XMLBuilder/CallerContract.h"

namespace Corvid::XMLBuilder {

/// The entry point that a failure names; the number is the line that callers see.
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
