#include "fuzz/xml/Pieces.h"

#include "fuzz/xml/Encoding.h"
#include "tests/fuzz/Seeds.h"

#include <gmock/gmock.h>

namespace Corvid::Fuzzing {
namespace {

using Kind = Piece::Kind;
using ::testing::ElementsAre;

std::vector<Kind> kindsOf(const std::string& text) {
    std::vector<Kind> kinds;
    for (const Piece& piece : takeApart(text)) {
        kinds.push_back(piece.kind);
    }
    return kinds;
}

struct Case {
    const char* name;
    std::string text;
    std::vector<Kind> kinds;
};

std::string nameOfCase(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

class Pieces : public ::testing::TestWithParam<Case> {};

TEST_P(Pieces, areTakenApartAndJoinedToTheSameText) {
    EXPECT_EQ(kindsOf(GetParam().text), GetParam().kinds);
    EXPECT_EQ(join(takeApart(GetParam().text)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    , Pieces,
    ::testing::Values(
        Case{"Nothing", "", {}}, Case{"Text", "a &lt; b", {Kind::text}},
        Case{"Element", "<a  b = '1'\n c=\"<>'\" >x</a >", {Kind::start, Kind::text, Kind::end}},
        Case{"EmptyElement", "<p:a b=\"1\"/><c />", {Kind::empty, Kind::empty}},
        Case{"Instruction", "<?xml version=\"1.0\"?><?a?>", {Kind::instruction, Kind::instruction}},
        Case{"Comment", "<!-- <a> --><!---->", {Kind::comment, Kind::comment}},
        Case{"CharacterData", "<![CDATA[<a>]]]]>", {Kind::characterData}},
        Case{"DocumentType", "<!DOCTYPE a>", {Kind::text}},
        Case{"TagWithoutEnd", "<a b=\"1", {Kind::text}},
        Case{"AttributeWithoutMarks", "<a b=1>", {Kind::text}},
        Case{"AttributeWithoutSpace", "<a b='1'c='2'>", {Kind::text}},
        Case{"CommentWithoutEnd", "<a/><!-- <b/>", {Kind::empty, Kind::text, Kind::empty}},
        Case{"Brackets", "<<a/><", {Kind::text, Kind::empty, Kind::text}},
        Case{"EndOfNothing", "</a></>", {Kind::end, Kind::text}},
        Case{"Zeros", std::string("<a\0/>", 5), {Kind::empty}}),
    nameOfCase);

TEST(PiecesOfDocuments, areJoinedToTheSameText) {
    const auto seeds = Testing::seedDocuments();
    ASSERT_GE(seeds.size(), 6U);
    for (const auto& [name, bytes] : seeds) {
        const auto text =
            decode(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()).text;
        EXPECT_EQ(join(takeApart(text)), text) << name;
        EXPECT_GT(takeApart(text).size(), 10U) << name;
        for (std::size_t cut = 1; cut < text.size(); cut += 97) {
            const std::string front = text.substr(0, cut);
            EXPECT_EQ(join(takeApart(front)), front) << name << " up to " << cut;
        }
    }
}

TEST(PiecesOfDocuments, tellWhereElementsEnd) {
    EXPECT_THAT(endsOf(takeApart("<a><b>1</b><c/></a><d>")), ElementsAre(6, 4, 3, 4, 5, 6, 7));
    EXPECT_THAT(endsOf(takeApart("</a><b></c></d>")), ElementsAre(1, 3, 3, 4));
}

} // namespace
} // namespace Corvid::Fuzzing
