#include "tests/editing/EditedClip.h"

#include "editing/DocumentMetadata.h"
#include "editing/WrittenDocument.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"

namespace Corvid::Testing {

Editing::EditPlan EditedClip::plan(const std::string& text, const Editing::EditOptions& options) {
    DataIO::Memory::MemoryDataSource document(reinterpret_cast<const unsigned char*>(text.data()),
                                              text.size());
    auto read = Editing::readDocument(document, MetaMetadata::Dictionary::builtIn(),
                                      Editing::DocumentIdentifiers::written);
    return editor.plan(read, options);
}

std::string documentOf(const Bytes& clip, const Editing::DocumentContent& content) {
    mxf::NoWarnings warnings;
    mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                       new DataIO::MemorySource(clip.data(), clip.size())),
                   MetaMetadata::Dictionary::builtIn(), warnings);
    const auto header = file.readMetadata();
    DataIO::Memory::MemoryDataSink text;
    XMLUtils::ReplaceInvalidCharacters invalid(0);
    Editing::WrittenDocument(*header.metadata, content)
        .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, invalid, text);
    return {text.rawBuffer(), text.rawBuffer() + text.serializedSize()};
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    const auto at = text.find(what);
    EXPECT_NE(at, std::string::npos) << "no '" << what << "' in\n" << text;
    return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

Editing::Modification testModification() {
    return {"Example Company",
            "Example Editor",
            "1.0",
            "Linux",
            Types::UUID(Types::ByteView{uuid(77).data(), Types::UUID::fixedSize}),
            Types::Timestamp(2024, 2, 29, 12, 30, 45, 0)};
}

std::string linesOf(const Editing::Changes& changes) {
    std::string lines;
    for (const auto& set : changes.sets) {
        using Kind = Editing::ChangedSet::Kind;
        lines += set.kind == Kind::changed ? "changed "
                 : set.kind == Kind::added ? "added "
                                           : "removed ";
        lines += set.name;
        if (set.kind == Kind::changed) {
            for (const auto& property : set.properties) {
                lines += " " + property.name;
            }
        }
        lines += "\n";
    }
    for (const auto& dark : changes.dark) {
        lines += "dark " + Platform::toUtf8(dark.key.toString()) + "\n";
    }
    return lines;
}

} // namespace Corvid::Testing
