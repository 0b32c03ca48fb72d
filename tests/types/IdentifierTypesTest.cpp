#include "host/base/Exceptions.h"
#include "tests/types/Samples.h"

#include <algorithm>

namespace Corvid::Testing {
namespace {

constexpr auto encoding = Types::dottedHexadecimal;

std::u16string inUpperCase(std::u16string text) {
    for (char16_t& unit : text) {
        unit = unit >= 'a' && unit <= 'f' ? static_cast<char16_t>(unit - 0x20) : unit;
    }
    return text;
}

Utf16Text unitsOf(const std::u16string& text) { return Utf16Text(text.begin(), text.end()); }

template <class T> class EveryIdentifier : public ::testing::Test {};
using IdentifierClasses = ::testing::Types<Types::UUID, Types::UniversalLabel, Types::UMID32,
                                           Types::UMID64, Types::LocalTag>;
struct NameOfType {
    template <class T> static std::string GetName(int) { return IdentifierOf<T>::name; }
};
TYPED_TEST_SUITE(EveryIdentifier, IdentifierClasses, NameOfType);

TYPED_TEST(EveryIdentifier, readsItsOwnTextInEitherCase) {
    EXPECT_EQ(encoding, 0);
    for (const Sample& sample : Samples<TypeParam>::fitting()) {
        const TypeParam identifier(viewOf(sample.bytes));
        const Utf16Text text = identifier.toString(encoding);
        EXPECT_EQ(TypeParam(text.c_str(), encoding), identifier) << sample.name;
        const Utf16Text upper = unitsOf(inUpperCase(textOf(text.c_str())));
        EXPECT_EQ(TypeParam(upper.c_str(), encoding), identifier) << sample.name;
    }
}

TYPED_TEST(EveryIdentifier, isLowerCasePairsJoinedByFullStops) {
    const std::size_t size = TypeParam::fixedSize;
    std::u16string expected = u"ff";
    for (std::size_t i = 1; i != size; ++i) {
        expected += u".ff";
    }
    const Bytes bytes(size, 0xFF);
    const TypeParam identifier(viewOf(bytes));
    EXPECT_EQ(textOf(identifier.toString(encoding).c_str()), expected);
    EXPECT_EQ(identifier.toString(encoding).size(), size * 3 - 1);
    EXPECT_EQ(identifier.size(), size);
}

TYPED_TEST(EveryIdentifier, refusesMalformedTextAndQuotesIt) {
    const Bytes bytes(TypeParam::fixedSize, 0xAB);
    const std::u16string good = textOf(TypeParam(viewOf(bytes)).toString(encoding).c_str());
    const std::u16string last = good.substr(good.size() - 3);
    const std::pair<const char*, std::u16string> cases[] = {
        {"empty", u""},
        {"one byte less", good.substr(3)},
        {"one byte more", good + last},
        {"stop at the end", good + u"."},
        {"stop at the front", u"." + good},
        {"half a byte less", good.substr(0, good.size() - 1)},
        {"half a byte more", good + u"a"},
        {"blank in front", u" " + good},
        {"blank behind", good + u" "},
        {"no digit", u"ag" + good.substr(2)},
        {"sign", u"+1" + good.substr(2)},
        {"colon for stop", u"ab:" + good.substr(3)},
        {"no stops", std::u16string(2 * TypeParam::fixedSize, u'a')},
        {"low byte looks like a digit", u"\u0130\u0130" + good.substr(2)},
        {"full-width digits", u"\uFF10\uFF10" + good.substr(2)},
        {"text of a URN", u"urn:uuid:00000000-0000-0000-0000-000000000000"},
    };
    for (const auto& [name, text] : cases) {
        try {
            const TypeParam read(unitsOf(text).c_str(), encoding);
            ADD_FAILURE() << name;
        } catch (const Exceptions::BaseException& problem) {
            EXPECT_EQ(problem.code(), 8U) << name;
            const std::string message = Platform::toUtf8(problem.message());
            EXPECT_NE(message.find("identifier '" + Platform::toUtf8(unitsOf(text)).substr(0, 150)),
                      std::string::npos)
                << message;
            EXPECT_NE(message.find("expected " + std::to_string(TypeParam::fixedSize) + " bytes"),
                      std::string::npos)
                << message;
        }
    }
}

TYPED_TEST(EveryIdentifier, isChangedAndComparedByteByByte) {
    TypeParam one;
    TypeParam other;
    EXPECT_EQ(one, other);
    const int last = static_cast<int>(TypeParam::fixedSize) - 1;
    other[last] = 0x80;
    EXPECT_NE(one, other);
    EXPECT_LT(one, other);
    one[0] = 1;
    EXPECT_LT(other, one);
    const TypeParam& constant = other;
    EXPECT_EQ(constant[last], 0x80);
}

TEST(UMID, hasTextOfFixedLength) {
    EXPECT_EQ(Types::UMID32().toString(encoding).size(), 95U);
    EXPECT_EQ(Types::UMID64().toString(encoding).size(), 191U);
}

TEST(UMID64, readsABasicUmidFilledUpWithZeros) {
    const Bytes bytes(32, 0xA5);
    Utf16Text text = Types::UMID32(viewOf(bytes)).toString(encoding);
    for (int i = 0; i != 32; ++i) {
        for (const char unit : {'.', '0', '0'}) {
            text.push_back(static_cast<u16>(unit));
        }
    }
    Bytes expected = bytes;
    expected.resize(64, 0);
    EXPECT_EQ(bytesOf(Types::UMID64(text.c_str(), encoding)), expected);
}

TEST(UniversalLabel, givesItsBytesWithoutVersion) {
    const Types::UniversalLabel label(
        std::array<u8, 16>{6, 14, 43, 52, 1, 1, 1, 9, 1, 2, 3, 4, 5, 6, 7, 8});
    auto expected = label.bytes();
    expected[7] = 0;
    EXPECT_EQ(label.withoutVersion(), expected);
}

TEST(LocalTag, isStaticBelow8000) {
    EXPECT_TRUE(Types::LocalTag(u16{0x0000}).isStaticLocalTag());
    EXPECT_TRUE(Types::LocalTag(u16{0x7FFF}).isStaticLocalTag());
    EXPECT_FALSE(Types::LocalTag(u16{0x8000}).isStaticLocalTag());
    EXPECT_FALSE(Types::LocalTag(u16{0xFFFF}).isStaticLocalTag());
    EXPECT_EQ(textOf(Types::LocalTag(u16{0x3C0A}).toString(encoding).c_str()), u"3c.0a");
    EXPECT_EQ(Types::LocalTag(u16{0x3C0A}).value(), 0x3C0A);
}

template <class T> void expectReferenceReadsItsText(bool strong) {
    for (const Sample& sample : Samples<T>::fitting()) {
        const Types::UUID uuid(viewOf(sample.bytes));
        const T reference(uuid);
        EXPECT_EQ(reference.uuid(), uuid);
        EXPECT_EQ(reference.size(), 16);
        EXPECT_EQ(reference.isStrong(), strong);
        EXPECT_EQ(reference.toString(), uuid.toString(encoding));
        EXPECT_EQ(T(reference.toString().c_str()).uuid(), uuid);
    }
    EXPECT_THROW(T(unitsOf(u"00.01").c_str()), Exceptions::InvalidFormat);
}

TEST(StrongReference, readsItsOwnText) {
    expectReferenceReadsItsText<Types::StrongReference>(true);
}
TEST(WeakReference, readsItsOwnText) { expectReferenceReadsItsText<Types::WeakReference>(false); }

TEST(StrongReference, readsTheTextOfZeros) {
    const auto zeros = unitsOf(u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00");
    EXPECT_EQ(Types::StrongReference(zeros.c_str()).uuid(), Types::UUID());
}

} // namespace
} // namespace Corvid::Testing
