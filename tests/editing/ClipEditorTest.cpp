#include "editing/apply/ClipEditor.h"

#include "editing/DocumentMetadata.h"
#include "editing/change/FindChanges.h"
#include "host/metadata/Elements.h"
#include "host/types/Types.h"
#include "tests/editing/CopyPartition.h"
#include "tests/editing/EditedClip.h"
#include "tests/support/NotingSource.h"
#include "tests/support/Paths.h"

#include <fstream>

namespace Corvid::Testing {
namespace {

using Editing::EditOptions;

Bytes bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::filesystem::path> clips() {
    std::vector<std::filesystem::path> all{sourceDir() / "examples" / "sample.mxf"};
    if (!samplesDir().empty()) {
        for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
            if (entry.path().extension() == ".mxf") {
                all.push_back(entry.path());
            }
        }
    }
    std::sort(all.begin(), all.end());
    return all;
}

class EveryClip : public ::testing::TestWithParam<std::filesystem::path> {};

std::string nameOfClip(const ::testing::TestParamInfo<std::filesystem::path>& info) {
    std::string name = info.param.stem().string();
    for (char& c : name) {
        c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    }
    return name;
}

TEST_P(EveryClip, staysAsItIsWhereItsDocumentIsNotEdited) {
    EditedClip clip(bytesOf(GetParam()));
    Editing::DocumentContent values;
    values.referencesAsValues = true;
    Editing::DocumentContent structural;
    structural.structuralOnly = true;
    EditOptions options;
    options.modification = testModification();
    for (const auto& content : {Editing::DocumentContent(), values, structural}) {
        SCOPED_TRACE(content.referencesAsValues ? "values"
                     : content.structuralOnly   ? "structural sets only"
                                                : "everything");
        const auto plan = clip.plan(documentOf(clip.bytes, content), options);
        EXPECT_EQ(linesOf(plan.changes), "");
        EXPECT_TRUE(plan.rewrite.isEmpty());
    }
}

/// The first text of a set that people may change, which every clip has.
Metadata::SimpleElement* findText(Metadata::PartitionMetadata& metadata) {
    struct IsText : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Types::UTF16String&) override { found = true; }
        bool found = false;
    };
    for (auto* set : metadata) {
        for (const auto& [label, element] : set->made()) {
            IsText text;
            auto* const simple = dynamic_cast<Metadata::SimpleElement*>(element);
            if (simple != nullptr && simple->value() != nullptr) {
                simple->value()->accept(text);
            }
            if (text.found) {
                return simple;
            }
        }
    }
    return nullptr;
}

void setText(Metadata::Element& element, const std::string& bytes) {
    EXPECT_TRUE(element.parse({reinterpret_cast<const Types::u8*>(bytes.data()), bytes.size()}));
}

/// Each copy of header metadata says the same as before.
void expectSameMetadata(const Bytes& before, const Bytes& after) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    Rewritable was(before);
    Rewritable is(after);
    ASSERT_EQ(was.file.partitions().size(), is.file.partitions().size());
    for (std::size_t i = 0; i != was.file.partitions().size(); ++i) {
        if (was.file.hasMetadata(i)) {
            EXPECT_EQ(
                linesOf(Editing::findChanges(was.file.layout(i), is.file.layout(i), *dictionary)),
                "");
        }
    }
}

TEST_P(EveryClip, saysTheSameAgainWhereATextIsChangedAndChangedBack) {
    EditedClip clip(bytesOf(GetParam()));
    const auto wanted = clip.editor.readMetadata();
    auto* const text = findText(*wanted);
    ASSERT_NE(text, nullptr);
    const std::string old = valueOf(*text);
    setText(*text, asText(utf16(u"Another text")));
    const auto plan = clip.editor.plan(*wanted, {});
    ASSERT_EQ(plan.changes.sets.size(), 1U);
    EditedClip changed(clip.after(plan));
    const auto again = changed.editor.readMetadata();
    EXPECT_EQ(linesOf(Editing::findChanges(*wanted, *again)), "");
    setText(*findText(*again), old);
    const Bytes back = changed.after(changed.editor.plan(*again, {}));
    expectSameMetadata(clip.bytes, back);
}

TEST_P(EveryClip, staysAsItIsWhereItsDocumentLosesItsInstructions) {
    EditedClip clip(bytesOf(GetParam()));
    Editing::DocumentContent bare;
    bare.hasInstructions = false;
    try {
        const auto plan = clip.plan(documentOf(clip.bytes, bare));
        EXPECT_EQ(linesOf(plan.changes), "");
    } catch (const Editing::DocumentMistakes& refusal) {
        GTEST_SKIP() << "it can't be read without: " << refusal.mistakes().front().text;
    }
}

TEST_P(EveryClip, isReadOnceToPlanAnEdit) {
    const Bytes bytes = bytesOf(GetParam());
    NotingSource source(bytes);
    mxf::NoWarnings warnings;
    Editing::ClipEditor editor(source, MetaMetadata::Dictionary::builtIn(), warnings);
    const auto wanted = editor.readMetadata();
    setText(*findText(*wanted), asText(utf16(u"Another text")));
    EXPECT_FALSE(editor.plan(*wanted, {}).isEmpty());
    EXPECT_EQ(*std::max_element(source.times.begin(), source.times.end()), 1);
}

INSTANTIATE_TEST_SUITE_P(, EveryClip, ::testing::ValuesIn(clips()), nameOfClip);

} // namespace
} // namespace Corvid::Testing
