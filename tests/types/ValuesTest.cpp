#include "host/dataio/Memory.h"
#include "tests/types/Samples.h"

#include <limits>

namespace Corvid::Testing {
namespace {

using namespace Types;

template <class Number> using Limits = std::numeric_limits<Number>;

template <class T, class Number> void expectNumber(Number number, const Bytes& bytes) {
    EXPECT_EQ(T(number).value(), number);
    EXPECT_EQ(bytesOf(T(number)), bytes);
    EXPECT_EQ(T(viewOf(bytes)).value(), number);
}

TEST(Integers, areBigEndian) {
    expectNumber<UInt8>(u8{0xFE}, {0xFE});
    expectNumber<UInt16>(u16{0x1234}, {0x12, 0x34});
    expectNumber<UInt32>(u32{0xFEDCBA98}, {0xFE, 0xDC, 0xBA, 0x98});
    expectNumber<UInt64>(u64{0xFEDCBA9876543210}, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10});
    expectNumber<Int8>(Limits<signed char>::min(), {0x80});
    expectNumber<Int16>(short{-2}, {0xFF, 0xFE});
    expectNumber<Int32>(Limits<int>::min(), {0x80, 0, 0, 0});
    expectNumber<Int64>(Limits<int64>::min(), {0x80, 0, 0, 0, 0, 0, 0, 0});
    expectNumber<Int64>(Limits<int64>::max(), {0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
    expectNumber<Position>(int64{-1}, Bytes(8, 0xFF));
    expectNumber<Length>(int64{258}, {0, 0, 0, 0, 0, 0, 1, 2});
    expectNumber<Orientation>(u8{4}, {4});
    expectNumber<SignalStandard>(u8{255}, {255});
    expectNumber<UTF16>(u16{0xD834}, {0xD8, 0x34});
    expectNumber<Boolean>(true, {1});
    expectNumber<Boolean>(false, {0});
}

TEST(Rational, keepsSignsAndAZeroDenominator) {
    const Rational rational(-1, 0);
    EXPECT_EQ(rational.numerator(), -1);
    EXPECT_EQ(rational.denominator(), 0);
    EXPECT_EQ(bytesOf(rational), (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
}

TEST(VersionType, isMajorThenMinor) {
    const VersionType version(1, 2);
    EXPECT_EQ(version.major(), 1);
    EXPECT_EQ(version.minor(), 2);
    EXPECT_EQ(bytesOf(version), (Bytes{1, 2}));
}

TEST(ProductVersion, keepsFiveNumbersAndUnlistedReleases) {
    const auto release = static_cast<ProductVersion::ReleaseVersion>(0xFFFE);
    const ProductVersion version(1, 0x203, 65535, 0, release);
    EXPECT_EQ(version.major(), 1);
    EXPECT_EQ(version.minor(), 0x203);
    EXPECT_EQ(version.patch(), 65535);
    EXPECT_EQ(version.build(), 0);
    EXPECT_EQ(version.releaseVersion(), release);
    EXPECT_EQ(bytesOf(version), (Bytes{0, 1, 2, 3, 0xFF, 0xFF, 0, 0, 0xFF, 0xFE}));
    EXPECT_EQ(ProductVersion::releasedVersion, 1);
}

TEST(ProductVersion, keepsTheFormThatItWasReadIn) {
    const Bytes nine = {0, 1, 2, 3, 0xFF, 0xFF, 0, 4, 0xFE};
    const Bytes ten = {0, 1, 2, 3, 0xFF, 0xFF, 0, 4, 0, 0xFE};
    for (const Bytes& bytes : {nine, ten}) {
        const ProductVersion version(viewOf(bytes));
        EXPECT_EQ(version.major(), 1);
        EXPECT_EQ(version.minor(), 0x203);
        EXPECT_EQ(version.patch(), 65535);
        EXPECT_EQ(version.build(), 4);
        EXPECT_EQ(version.releaseVersion(), 0xFE);
        EXPECT_EQ(bytesOf(version), bytes);
        EXPECT_EQ(bytesOf(ProductVersion(version)), bytes);
        EXPECT_EQ(bytesOf(version.inNineBytes()), nine);
        EXPECT_EQ(bytesOf(version), bytes);
    }
}

TEST(ProductVersion, hasNoFormOfNineBytesForAReleaseAbove255) {
    const auto least = static_cast<ProductVersion::ReleaseVersion>(256);
    const auto greatest = static_cast<ProductVersion::ReleaseVersion>(255);
    EXPECT_EQ(bytesOf(ProductVersion(1, 2, 3, 4, least).inNineBytes()),
              (Bytes{0, 1, 0, 2, 0, 3, 0, 4, 1, 0}));
    EXPECT_EQ(bytesOf(ProductVersion(1, 2, 3, 4, greatest).inNineBytes()),
              (Bytes{0, 1, 0, 2, 0, 3, 0, 4, 0xFF}));
}

struct MilliSecondCase {
    const char* name;
    u16 given;
    u8 stored;      ///< 4 ms steps, low 8 bits
    u16 afterwards; ///< what is read from those bytes
};
void PrintTo(const MilliSecondCase& c, std::ostream* out) { *out << c.name; }

std::string nameOfMilliSeconds(const ::testing::TestParamInfo<MilliSecondCase>& info) {
    return info.param.name;
}

class TimestampMilliSeconds : public ::testing::TestWithParam<MilliSecondCase> {};

TEST_P(TimestampMilliSeconds, areStoredInStepsOfFour) {
    const auto& [name, given, stored, afterwards] = GetParam();
    const Timestamp time(2004, 2, 31, 99, 60, 61, given);
    EXPECT_EQ(time.milliSecond(), given);
    EXPECT_EQ(bytesOf(time), (Bytes{0x07, 0xD4, 2, 31, 99, 60, 61, stored}));
    const Bytes bytes = bytesOf(time);
    EXPECT_EQ(Timestamp(viewOf(bytes)).milliSecond(), afterwards);
    EXPECT_EQ(dynamic_cast<const Timestamp&>(*time.clone()).milliSecond(), given);
}

INSTANTIATE_TEST_SUITE_P(, TimestampMilliSeconds,
                         ::testing::Values(MilliSecondCase{"Zero", 0, 0, 0},
                                           MilliSecondCase{"BelowAStep", 3, 0, 0},
                                           MilliSecondCase{"AStep", 4, 1, 4},
                                           MilliSecondCase{"LastOfASecond", 999, 249, 996},
                                           MilliSecondCase{"MoreThanASecond", 1000, 250, 1000},
                                           MilliSecondCase{"GreatestStored", 1023, 255, 1020},
                                           MilliSecondCase{"BeyondAByte", 1024, 0, 0},
                                           MilliSecondCase{"LowBitsOf80000", 14464, 32, 128}),
                         nameOfMilliSeconds);

TEST(Timestamp, readsItsFields) {
    const Bytes bytes = {0xFF, 0xFE, 13, 32, 24, 60, 61, 255};
    const Timestamp time(viewOf(bytes));
    EXPECT_EQ(time.year(), 0xFFFE);
    EXPECT_EQ(time.month(), 13);
    EXPECT_EQ(time.day(), 32);
    EXPECT_EQ(time.hour(), 24);
    EXPECT_EQ(time.minute(), 60);
    EXPECT_EQ(time.second(), 61);
    EXPECT_EQ(time.milliSecond(), 1020);
}

TEST(RGBALayout, setsAndGetsEightPlacesAndNothingBehind) {
    RGBALayout layout;
    EXPECT_EQ(bytesOf(layout), Bytes(16, 0));
    Bytes expected;
    for (u32 i = 0; i != 8; ++i) {
        layout.set(i, {static_cast<u8>('A' + i), static_cast<u8>(i + 1)});
        expected.push_back(static_cast<u8>('A' + i));
        expected.push_back(static_cast<u8>(i + 1));
    }
    for (const u32 behind : {8U, 9U, 0x80000000U, 0xFFFFFFFFU}) {
        layout.set(behind, {'Z', 99});
        EXPECT_EQ(layout.get(behind).code, 0) << behind;
        EXPECT_EQ(layout.get(behind).depth, 0) << behind;
    }
    EXPECT_EQ(bytesOf(layout), expected);
    EXPECT_EQ(layout.get(7).code, 'H');
    EXPECT_EQ(layout.get(7).depth, 8);
}

struct TextCase {
    const char* name;
    Bytes bytes;
    std::u16string text;
};
void PrintTo(const TextCase& c, std::ostream* out) { *out << c.name; }
std::string nameOfText(const ::testing::TestParamInfo<TextCase>& info) { return info.param.name; }

class UTF16StringFromBytes : public ::testing::TestWithParam<TextCase> {};

TEST_P(UTF16StringFromBytes, endsAtItsFirstZeroAndKeepsItsBytes) {
    const UTF16String string(viewOf(GetParam().bytes));
    EXPECT_EQ(textOf(string.value()), GetParam().text);
    EXPECT_EQ(bytesOf(string), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    , UTF16StringFromBytes,
    ::testing::Values(TextCase{"Empty", {}, u""}, TextCase{"TerminatorOnly", {0, 0}, u""},
                      TextCase{"NoTerminator", {0, 'a', 0x26, 0x3A}, u"a\u263A"},
                      TextCase{"Terminator", {0, 'a', 0, 0}, u"a"},
                      TextCase{"Padding", {0, 'a', 0, 0, 0, 0, 0, 0}, u"a"},
                      TextCase{"EmbeddedZero", {0, 'a', 0, 0, 0, 'b'}, u"a"},
                      TextCase{"LoneSurrogate", {0xD8, 0x34, 0, 'x'}, std::u16string{0xD834, u'x'}},
                      TextCase{"ByteOrderMark", {0xFE, 0xFF, 0, 'x'}, u"\uFEFFx"},
                      TextCase{"OddBytes", {0, 'a', 0}, u"a"}),
    nameOfText);

class ISO7StringFromBytes : public ::testing::TestWithParam<TextCase> {};

TEST_P(ISO7StringFromBytes, endsAtItsFirstZeroAndKeepsItsBytes) {
    const ISO7String string(viewOf(GetParam().bytes));
    const std::u16string text = GetParam().text;
    EXPECT_EQ(std::string(string.value()), std::string(text.begin(), text.end()));
    EXPECT_EQ(bytesOf(string), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(, ISO7StringFromBytes,
                         ::testing::Values(TextCase{"Empty", {}, u""},
                                           TextCase{"TerminatorOnly", {0}, u""},
                                           TextCase{"NoTerminator", {'e', 'n', 'g'}, u"eng"},
                                           TextCase{"Padding", {'e', 'n', 0, 0}, u"en"},
                                           TextCase{"EmbeddedZero", {'e', 0, 'n'}, u"e"}),
                         nameOfText);

struct TextFit {
    const char* name;
    Bytes bytes;
    bool fitsUTF16;
    bool fitsISO7;
};
void PrintTo(const TextFit& c, std::ostream* out) { *out << c.name; }

class TextFits : public ::testing::TestWithParam<TextFit> {};

TEST_P(TextFits, unlessItsTerminatorHidesBytes) {
    EXPECT_EQ(UTF16String::fits(viewOf(GetParam().bytes)), GetParam().fitsUTF16);
    EXPECT_EQ(ISO7String::fits(viewOf(GetParam().bytes)), GetParam().fitsISO7);
}

INSTANTIATE_TEST_SUITE_P(
    , TextFits,
    ::testing::Values(TextFit{"Empty", {}, true, true}, TextFit{"Zeros", Bytes(10), true, true},
                      TextFit{"Terminated", {0, 'a', 0, 0, 0, 'b'}, true, false},
                      TextFit{"LengthInFront", {0, 0, 0, 5, 'e', 'n', '-', 'U'}, false, false},
                      TextFit{"LastByteOnly", {0, 0, 0, 1}, false, false},
                      TextFit{"TextAndMore", {'a', 0, 0, 0, 0, 'b'}, true, true}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(ISO7String, keepsEightBits) {
    const Bytes bytes = {'a', 0x80, 0xFF};
    EXPECT_STREQ(ISO7String(viewOf(bytes)).value(), "a\x80\xFF");
    EXPECT_EQ(bytesOf(ISO7String("a\x80\xFF")), bytes);
}

TEST(Strings, madeFromTextHaveNoTerminator) {
    const u16 text[] = {'C', 0x263A, 0};
    EXPECT_EQ(bytesOf(UTF16String(text)), (Bytes{0, 'C', 0x26, 0x3A}));
    EXPECT_EQ(textOf(UTF16String(text).value()), u"C\u263A");
    EXPECT_EQ(bytesOf(ISO7String("abc")), (Bytes{'a', 'b', 'c'}));
    EXPECT_STREQ(ISO7String("").value(), "");
}

TEST(J2KPictureComponent, isThreeBytes) {
    const J2KPictureComponent component(7, 1, 255);
    EXPECT_EQ(component.sSizi(), 7);
    EXPECT_EQ(component.xRSizi(), 1);
    EXPECT_EQ(component.yRSizi(), 255);
    EXPECT_EQ(bytesOf(component), (Bytes{7, 1, 255}));
}

TEST(J2KCodingStyleDefault, hasTheSameFieldsFromBytesAndFromParts) {
    const Bytes bytes = {1, 0xFF, 0xFF, 0xFF, 0xFE, 5, 3, 3, 0, 1};
    const J2KCodingStyleDefault read(viewOf(bytes));
    const J2KCodingStyleDefault made(1, 0xFFFFFFFE, bytes.data() + 5, 5);
    for (const auto* value : {&read, &made}) {
        EXPECT_EQ(value->scod(), 1);
        EXPECT_EQ(value->sGcod(), 0xFFFFFFFE);
        EXPECT_EQ(bytesOf(value->spcod()), Bytes(bytes.begin() + 5, bytes.end()));
        EXPECT_EQ(bytesOf(*value), bytes);
    }
    EXPECT_EQ(bytesOf(J2KCodingStyleDefault(9, 1, nullptr, 0)), (Bytes{9, 0, 0, 0, 1}));
    EXPECT_EQ(J2KCodingStyleDefault(9, 1, nullptr, 0).spcod().serializedSize(), 0);
}

TEST(J2KQuantisationDefault, hasTheSameFieldsFromBytesAndFromParts) {
    const Bytes bytes = {0x22, 0x77, 0x1E};
    const J2KQuantisationDefault read(viewOf(bytes));
    const J2KQuantisationDefault made(0x22, bytes.data() + 1, 2);
    for (const auto* value : {&read, &made}) {
        EXPECT_EQ(value->sqcd(), 0x22);
        EXPECT_EQ(bytesOf(value->sPgcd()), Bytes(bytes.begin() + 1, bytes.end()));
        EXPECT_EQ(bytesOf(*value), bytes);
    }
    EXPECT_EQ(bytesOf(J2KQuantisationDefault(3, nullptr, 0)), (Bytes{3}));
}

TEST(ByteRuns, tellTheirBytesInFullAndTheLow16BitsOfTheirNumber) {
    const Bytes bytes(0x10003, 7);
    const DataStream stream(bytes.data(), static_cast<u32>(bytes.size()));
    EXPECT_EQ(stream.serializedSize(), 3);
    EXPECT_EQ(stream.byteCount(), bytes.size());
    EXPECT_EQ(Bytes(stream.rawBuffer(), stream.rawBuffer() + stream.byteCount()), bytes);
    Batch batch(3);
    batch.add(stream.clone());
    EXPECT_EQ(batch.byteCount(), bytes.size() + 8);
    EXPECT_EQ(batch.serializedSize(), 11);
    EXPECT_EQ(Rational(1, 2).byteCount(), 8U);
}

TEST(Unknown, takesTheBytesOfAKlvValue) {
    const Bytes bytes = {0x0A, 0xFF, 0};
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Value value(source, bytes.size());
    EXPECT_EQ(bytesOf(Unknown(value)), bytes);
    EXPECT_EQ(bytesOf(DataStream(bytes.data(), 3)), bytes);
}

} // namespace
} // namespace Corvid::Testing
