#include "fuzz/PlainSets.h"

#include "tests/support/MxfBuilder.h"

#include <gtest/gtest.h>

namespace Corvid::Fuzzing {
namespace {

using Testing::Bytes;
using Testing::hex;
using Testing::join;
using Testing::klv;

const Bytes primerKey = hex("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.05.01.00");
const Bytes setKey = hex("06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00");
const Bytes berSetKey = hex("06.0e.2b.34.02.13.01.01.0d.01.01.01.01.01.2f.00");
const Bytes darkKey = hex("80.53.08.00.36.21.08.04.b3.b3.98.a5.1c.90.11.d4");
const Bytes fillKey = hex("06.0e.2b.34.01.01.01.02.03.01.02.10.01.00.00.00");
const Bytes label = hex("06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00");

Bytes primer(const char* tag, const Bytes& meaning = label) {
    return klv(primerKey, join({hex("00.00.00.01.00.00.00.12"), hex(tag), meaning}));
}

PlainMetadata read(const Bytes& bytes) {
    return readPlainly({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

struct Case {
    const char* name;
    Bytes before;
    Bytes after;
    bool isSame;
};

std::string nameOfCase(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

class ExpectSameSets : public ::testing::TestWithParam<Case> {};

TEST_P(ExpectSameSets, endsTheSearchWhereTheyAreNot) {
    const PlainMetadata before = read(GetParam().before);
    const PlainMetadata after = read(GetParam().after);
    if (GetParam().isSame) {
        expectSameSets(before, after);
    } else {
        EXPECT_DEATH(expectSameSets(before, after), "a set is different");
    }
}

const Bytes one = hex("80.01.00.01.aa");
const Bytes two = hex("80.02.00.01.bb");

INSTANTIATE_TEST_SUITE_P(
    , ExpectSameSets,
    ::testing::Values(
        Case{"OtherOrder", join({klv(setKey, join({one, two})), klv(darkKey, one)}),
             join({klv(darkKey, one), klv(setKey, join({two, one}))}), true},
        Case{"Fill", join({klv(setKey, one), klv(fillKey, two)}), klv(setKey, one), true},
        Case{"OtherTagOfALabel", join({primer("80.01"), klv(setKey, one)}),
             join({primer("80.02"), klv(setKey, hex("80.02.00.01.aa"))}), true},
        Case{"TagThatOnePrimerLacks", klv(setKey, one), join({primer("80.01"), klv(setKey, one)}),
             true},
        Case{"OtherLabelOfATag", join({primer("80.01"), klv(setKey, one)}),
             join({primer("80.01", setKey), klv(setKey, one)}), false},
        Case{"OtherForm", klv(berSetKey, hex("80.01.01.aa")), klv(berSetKey, hex("80.01.81.01.aa")),
             true},
        Case{"OtherValue", klv(setKey, one), klv(setKey, hex("80.01.00.01.ab")), false},
        Case{"OtherTag", klv(setKey, one), klv(setKey, hex("80.02.00.01.aa")), false},
        Case{"MissingProperty", klv(setKey, join({one, two})), klv(setKey, one), false},
        Case{"ExtraProperty", klv(setKey, one), klv(setKey, join({one, one})), false},
        Case{"MissingSet", join({klv(setKey, one), klv(setKey, one)}), klv(setKey, one), false},
        Case{"OtherKey", klv(setKey, one), klv(berSetKey, hex("80.01.01.aa")), false},
        Case{"OtherBytesOfADarkSet", klv(darkKey, one), klv(darkKey, two), false},
        Case{"SetThatIsCut", klv(setKey, hex("80.01.00.02.aa")), klv(setKey, hex("80.01.00.02.ab")),
             false}),
    nameOfCase);

} // namespace
} // namespace Corvid::Fuzzing
