#include "tools/corvid/Apply.h"

#include "tools/corvid/ReadDocument.h"
#include "tools/corvid/input/DocumentFile.h"
#include "tools/corvid/reports/DocumentReport.h"
#include "tools/corvid/terminal/Messages.h"

#include <memory>
#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

Editing::DocumentMetadata readDocument(const ApplyOptions& options, const Dictionary& dictionary,
                                       Messages& messages) {
    messages.setFile(options.document);
    DocumentFile file(options.document);
    auto document = readStrictly(file, dictionary, Editing::DocumentIdentifiers::written, messages);
    report(document, messages);
    messages.setFile(options.clip);
    return document;
}

} // namespace

void apply(const ApplyOptions& options, Messages& messages) {
    const auto read = [&](const Dictionary& dictionary) -> MakePlan {
        const auto document = std::make_shared<Editing::DocumentMetadata>(
            readDocument(options, dictionary, messages));
        return [document](Editing::ClipEditor& editor, const Editing::EditOptions& edit) {
            return editor.plan(*document, edit);
        };
    };
    const nlohmann::ordered_json origin{{"document", options.document}};
    editClip(options, {{options.document}, origin, read}, messages);
}

} // namespace Corvid::Tool
