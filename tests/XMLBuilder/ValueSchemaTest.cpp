#include "XMLBuilder/schema/Schemas.h"
#include "tests/XMLBuilder/Things.h"
#include "tests/XMLBuilder/ValueCases.h"
#include "tests/support/Paths.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

namespace Corvid::Testing {
namespace {

/// One thing for each text of a case, and the lines of the refused ones.
struct Page {
    std::string document;
    std::set<std::size_t> refused;
};

Page pageOf(const std::vector<ValueCase>& cases) {
    Page page;
    std::string inside = "\n";
    std::size_t line = 2;
    const auto add = [&](const ValueCase& each, const std::string& text) {
        const std::string thing = "<t:Thing rp210:InstanceUID=\"" + dotted(16) + "\">" +
                                  each.before + text + each.after + "</t:Thing>\n";
        inside += thing;
        line += static_cast<std::size_t>(std::count(thing.begin(), thing.end(), '\n'));
    };
    for (const auto& each : cases) {
        for (const auto& text : each.allowed) {
            add(each, text);
        }
        for (const auto& text : each.refused) {
            page.refused.insert(line);
            add(each, text);
        }
    }
    page.document = documentOf(inside);
    return page;
}

std::string lineOf(const std::string& text, std::size_t line) {
    std::size_t begin = 0;
    while (--line != 0) {
        begin = text.find('\n', begin) + 1;
    }
    return text.substr(begin, text.find('\n', begin) - begin);
}

/// Compares the lines with errors, which follow a text in what a validator prints, with those that
/// should have some.
void expectErrors(const Page& page, const std::string& printed, const std::string& mark) {
    std::set<std::size_t> found;
    for (std::size_t at = printed.find(mark); at != std::string::npos;
         at = printed.find(mark, at + 1)) {
        found.insert(std::strtoull(printed.c_str() + at + mark.size(), nullptr, 10));
    }
    const auto report = [&](const auto& these, const auto& others, const char* what) {
        std::set<std::size_t> odd;
        std::set_difference(these.begin(), these.end(), others.begin(), others.end(),
                            std::inserter(odd, odd.end()));
        for (const std::size_t line : odd) {
            ADD_FAILURE() << what << lineOf(page.document, line);
        }
    };
    report(page.refused, found, "allowed: ");
    report(found, page.refused, "refused: ");
}

using ValueSchemas = Things;

TEST_F(ValueSchemas, allowTheValuesOfEachTypeOnly) {
    const Page page = pageOf(valueCases());
    expectErrors(page, "\n" + validityErrors(model_.dictionary(), page.document), "\nline ");
}

TEST_F(ValueSchemas, haveCasesForEveryTypeThatDocumentsShow) {
    const auto all = valueCases();
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if (Id != Types::Identifiers::DataValue && Id != Types::Identifiers::StrongReference &&        \
        Id != Types::Identifiers::WeakReference && Id != Types::Identifiers::Batch &&              \
        Id != Types::Identifiers::Array) {                                                         \
        EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const ValueCase& each) {                \
            return each.before.find("<e:" #Class ">") == 0;                                        \
        })) << #Class;                                                                             \
    }
#include "host/types/ValueTypes.def"
}

TEST_F(ValueSchemas, sayTheSameToOtherValidators) {
    if (xmllint().empty()) {
        GTEST_SKIP() << "no xmllint";
    }
    const TemporaryDir folder;
    for (const auto& schema : XMLBuilder::makeSchemas(model_.dictionary())) {
        std::ofstream(folder.path() / schema.fileName)
            << toText(schema.document.get(), XMLUtils::Layout::indented);
    }
    const Page page = pageOf(valueCases());
    std::ofstream(folder.path() / "page.xml") << page.document;
    const std::string command = "cd '" + folder.path().string() + "' && '" + xmllint() +
                                "' --noout --nonet --schema s377m.xsd page.xml 2>printed";
    EXPECT_NE(std::system(command.c_str()), 0);
    std::ifstream file(folder.path() / "printed");
    const std::string printed((std::istreambuf_iterator<char>(file)), {});
    expectErrors(page, "\n" + printed, "\npage.xml:");
}

} // namespace
} // namespace Corvid::Testing
