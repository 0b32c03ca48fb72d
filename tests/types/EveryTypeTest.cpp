#include "host/dataio/Memory.h"
#include "tests/types/Samples.h"

namespace Corvid::Testing {
namespace {

struct NameOfType {
    template <class T> static std::string GetName(int) { return IdentifierOf<T>::name; }
};

// Note every call: the overload, and the address of what it was called with.
using Calls = std::vector<std::pair<std::string, const Types::DataType*>>;

#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void visit(const Types::Class& value) override { calls.emplace_back(#Class, &value); }
class ConstRecorder : public Types::Visitors::Visitor {
public:
#include "host/types/ValueTypes.def"
    Calls calls;
};

#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void visit(Types::Class& value) override { calls.emplace_back(#Class, &value); }
class NonConstRecorder : public Types::Visitors::NonConstVisitor {
public:
#include "host/types/ValueTypes.def"
    Calls calls;
};

template <class T> class EveryType : public ::testing::Test {};
TYPED_TEST_SUITE(EveryType, AllTypes, NameOfType);

TYPED_TEST(EveryType, givesBackTheBytesItWasMadeFrom) {
    for (const Sample& sample : Samples<TypeParam>::fitting()) {
        const auto value = makeFromBytes<TypeParam>(sample.bytes);
        ASSERT_TRUE(value) << sample.name;
        EXPECT_EQ(bytesOf(*value), sample.bytes) << sample.name;
        EXPECT_EQ(value->serializedSize(), sample.bytes.size()) << sample.name;
        DataIO::Memory::MemoryDataSink sink;
        value->serialize(sink);
        EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()), sample.bytes)
            << sample.name;
    }
}

TYPED_TEST(EveryType, refusesBytesThatDoNotFit) {
    for (const Sample& sample : Samples<TypeParam>::unfit()) {
        EXPECT_FALSE(makeFromBytes<TypeParam>(sample.bytes)) << sample.name;
    }
}

TYPED_TEST(EveryType, isVisitedAsItsMostDerivedTypeOnce) {
    for (const Sample& sample : Samples<TypeParam>::fitting()) {
        const auto value = makeFromBytes<TypeParam>(sample.bytes);
        ASSERT_TRUE(value);
        const Types::DataType* const address = value.get();
        const Calls expected = {{IdentifierOf<TypeParam>::name, address}};
        ConstRecorder constant;
        address->accept(constant);
        EXPECT_EQ(constant.calls, expected);
        NonConstRecorder changing;
        value->accept(changing);
        EXPECT_EQ(changing.calls, expected);
        Types::Visitors::NullVisitor nothing;
        address->accept(nothing);
    }
}

TYPED_TEST(EveryType, clonesToAnEqualValueOfItsOwn) {
    for (const Sample& sample : Samples<TypeParam>::fitting()) {
        auto value = makeFromBytes<TypeParam>(sample.bytes);
        ASSERT_TRUE(value);
        const auto clone = value->clone();
        ASSERT_NE(clone.get(), value.get());
        value.reset();
        EXPECT_EQ(bytesOf(*clone), sample.bytes) << sample.name;
        ConstRecorder recorder;
        clone->accept(recorder);
        ASSERT_EQ(recorder.calls.size(), 1U);
        EXPECT_EQ(recorder.calls[0].first, IdentifierOf<TypeParam>::name);
    }
}

TYPED_TEST(EveryType, hasTheSizeThatItsIdentifierTells) {
    const int told = Types::Identifiers::typeSize(IdentifierOf<TypeParam>::value);
    std::size_t least = static_cast<std::size_t>(-1);
    std::size_t most = 0;
    for (const Sample& sample : Samples<TypeParam>::fitting()) {
        least = std::min(least, sample.bytes.size());
        most = std::max(most, sample.bytes.size());
    }
    if constexpr (std::is_same_v<TypeParam, Types::ProductVersion>) {
        least = most; // the form of 9 bytes never is an item
    }
    EXPECT_EQ(told, least == most ? static_cast<int>(most) : 0);
}

TYPED_TEST(EveryType, isFreedBySizeWithItsOwnOperatorDelete) {
    // The operators of DataType must be the ones in use, none of the global ones.
    static_assert(noexcept(TypeParam::operator delete(nullptr, sizeof(TypeParam))));
    static_assert(std::is_same_v<decltype(&TypeParam::operator new), void* (*)(std::size_t)>);

    static std::vector<std::size_t> freed;
    struct Watched : TypeParam {
        explicit Watched(const TypeParam& value) : TypeParam(value) {}
        static void* operator new(std::size_t size) { return TypeParam::operator new(size); }
        static void operator delete(void* memory, std::size_t size) noexcept {
            freed.push_back(size);
            TypeParam::operator delete(memory, size);
        }
        u8 more[100] = {};
    };
    const auto value = makeFromBytes<TypeParam>(Samples<TypeParam>::fitting().front().bytes);
    ASSERT_TRUE(value);
    freed.clear();
    { Templates::auto_ptr<Types::DataType> owner(new Watched(dynamic_cast<TypeParam&>(*value))); }
    EXPECT_EQ(freed, std::vector<std::size_t>{sizeof(Watched)});
}

} // namespace
} // namespace Corvid::Testing
