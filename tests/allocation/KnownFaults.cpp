#include "tests/allocation/KnownFaults.h"

#include <algorithm>
#include <iterator>

namespace Corvid::Testing {

namespace {

constexpr KnownLeak knownLeaks[] = {
    {"::createLSParser(", "the constructors of parser and scanner do not release their members"},
    {"::AbstractDOMParser::parse(",
     "the scanner loses the reader, with its stream, or declaration that it is about to add",
     "::ReaderMgr::createReader("},
    {"::AbstractDOMParser::startDocument(",
     "what the document is about to be made with is not released"},
    {"::createDocument(", "the constructors of documents do not release their members"},
    {"XQillaDocumentImpl::createExpression(",
     "the constructors of contexts do not release their members"},
};

/// Xerces-C releases the text of XQilla's exception twice when there is no memory to copy it.
constexpr const char* knownCrash = "XQillaException::XQillaException(XQException const&)";

Callers::const_iterator find(const Callers& callers, const char* call) {
    return std::find_if(callers.begin(), callers.end(), [&](const std::string& caller) {
        return caller.find(call) != std::string::npos;
    });
}

bool holds(const Callers& callers, const char* call) {
    return find(callers, call) != callers.end();
}

/// Whether the call is one of the callers and what it calls is not Corvid's, or is asked for.
bool isWithin(const Callers& callers, const KnownLeak& known) {
    const auto found = find(callers, known.call);
    return found != callers.end() &&
           (found < find(callers, "Corvid") ||
            (known.handsOver != nullptr && find(callers, known.handsOver) < found));
}

} // namespace

std::string linesOf(const Callers& callers) {
    std::string text;
    for (const std::string& caller : callers) {
        text += "  " + caller + "\n";
    }
    return text;
}

const KnownLeak* findKnownLeak(const Callers& callers, const Callers& failed) {
    const auto* const found =
        std::find_if(std::begin(knownLeaks), std::end(knownLeaks), [&](const KnownLeak& known) {
            return isWithin(callers, known) && holds(failed, known.call);
        });
    return found == std::end(knownLeaks) ? nullptr : found;
}

bool isKnownToCrash(const Callers& callers) { return holds(callers, knownCrash); }

} // namespace Corvid::Testing
