#include "tools/corvid/ReadDocument.h"

#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/reports/DocumentReport.h"

namespace Corvid::Tool {

Editing::DocumentMetadata readStrictly(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers, Messages& messages) {
    try {
        return Editing::readDocument(source, dictionary, identifiers);
    } catch (const Editing::DocumentMistakes& refusal) {
        report(refusal, messages);
        throw EndedWith{exitRefused};
    }
}

} // namespace Corvid::Tool
