#pragma once

#include "host/base/KeyedHash.h"
#include "host/xmlutils/scan/StartTagScanner.h"
#include "host/xmlutils/scan/TableLoad.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace Corvid::XMLUtils {

/// Knows what the hash tables of Xerces-C will hold once it has read the start tags given, and ends
/// the scan at a tag that would overfill one of their buckets, or has too many attributes.
class ParserTables final : public StartTagSink {
public:
    bool startTag(std::u16string_view name) override;
    bool attribute(std::u16string_view name) override;
    bool namespaceUri(std::u16string_view uri) override;
    bool endOfTag() override;

    /// What is wrong with the tag that ended the scan; empty where none did.
    const std::string& problem() const { return problem_; }

private:
    /// Texts of which a table holds one each.
    class Texts {
    public:
        /// @return whether the text is another than those before.
        bool insert(std::u16string_view text);

    private:
        KeyedHash hash_{KeyedHash::randomKey()};
        std::unordered_set<std::uint64_t> hashes_;
        /// Some that came up. Most tags of a document share few names, and to find one here costs
        /// less than its hash.
        std::array<std::u16string, 256> recent_;
    };
    struct Table {
        Texts texts;
        TableLoad load;
    };

    // Each returns whether the scan goes on.
    bool useInDocument(std::u16string_view name);
    bool use(Table& table, std::u16string_view text);
    bool count(TableLoad& load, std::u16string_view text);
    bool countOfTag(TableLoad& load, std::uint64_t hash);
    bool refuse(const std::string& problem);
    std::uint64_t xercesHash(std::u16string_view text);

    Table elements_{{}, {29, growsEarly}};
    Table prefixes_{{}, {109, growsEarly}};
    Table uris_{{}, {109, growsEarly}};
    Texts attributeNames_; ///< in no table but the document's
    Table document_{{}, {257, {0, 0}}};

    // Of a tag's attributes Xerces-C makes a table, and where there are many another, whose width
    // the first such tag decides.
    TableLoad attributes_{7, growsLate};
    std::optional<TableLoad> attributesAgain_;

    std::u16string element_;           ///< the name in the tag
    std::vector<std::uint64_t> ofTag_; ///< for each attribute so far the hash of its local name
    std::u16string terminated_;
    std::string problem_;
};

} // namespace Corvid::XMLUtils
