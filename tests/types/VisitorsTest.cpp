#include "tests/types/Samples.h"

#include <cstring>

namespace Corvid::Testing {
namespace {

struct Row {
    std::string name;
    int identifier; ///< 0 for one that may have any
};

// The order of the operations and the identifiers that other libraries and dictionaries rely on;
// written out, because the list of types is what is being tested.
const Row fixedOrder[] = {{"J2KQuantisationDefault", 39},
                          {"J2KCodingStyleDefault", 38},
                          {"J2KPictureComponent", 37},
                          {"DataValue", 36},
                          {"StrongReference", 0},
                          {"WeakReference", 0},
                          {"Unknown", 24},
                          {"VersionType", 28},
                          {"UUID", 27},
                          {"UTF16String", 26},
                          {"UTF16", 25},
                          {"UniversalLabel", 23},
                          {"UMID64", 22},
                          {"UMID32", 21},
                          {"UInt8", 20},
                          {"UInt64", 19},
                          {"UInt32", 18},
                          {"UInt16", 17},
                          {"Timestamp", 16},
                          {"SignalStandard", 35},
                          {"RGBALayout", 34},
                          {"Rational", 15},
                          {"ProductVersion", 14},
                          {"Position", 13},
                          {"Orientation", 33},
                          {"LocalTag", 0},
                          {"Length", 11},
                          {"ISO7String", 9},
                          {"Int8", 8},
                          {"Int64", 7},
                          {"Int32", 6},
                          {"Int16", 5},
                          {"DataStream", 3},
                          {"Boolean", 2},
                          {"Batch", 0},
                          {"Array", 0}};

struct Listed {
    std::string name;
    Types::Identifiers::Identifier identifier;
    std::ptrdiff_t slot;
    std::ptrdiff_t nonConstSlot;
};

/// The place of a virtual operation in the table of its class, where the platform reveals it (the C++
/// ABI of Itanium and its followers on x86-64: byte offset plus one); else -1.
template <class Operation> std::ptrdiff_t slotOf([[maybe_unused]] Operation operation) {
#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
#else
    return -1;
#endif
}

template <class T> using VisitOf = void (Types::Visitors::Visitor::*)(const T&);
template <class T> using NonConstVisitOf = void (Types::Visitors::NonConstVisitor::*)(T&);

std::vector<Listed> listed() {
    return {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    {#Class, Types::Identifiers::Class,                                                            \
     slotOf(static_cast<VisitOf<Types::Class>>(&Types::Visitors::Visitor::visit)),                 \
     slotOf(                                                                                       \
         static_cast<NonConstVisitOf<Types::Class>>(&Types::Visitors::NonConstVisitor::visit))},
#include "host/types/ValueTypes.def"
    };
}

TEST(Visitor, hasItsOperationsInTheFixedOrder) {
    const auto types = listed();
    ASSERT_EQ(types.size(), std::size(fixedOrder));
    for (std::size_t i = 0; i != types.size(); ++i) {
        EXPECT_EQ(types[i].name, fixedOrder[i].name) << i;
        if (types[i].slot != -1) {
            // That ABI gives a virtual destructor two places at the front.
            EXPECT_EQ(types[i].slot, static_cast<std::ptrdiff_t>(i + 2)) << types[i].name;
            EXPECT_EQ(types[i].nonConstSlot, static_cast<std::ptrdiff_t>(i + 2)) << types[i].name;
        }
    }
}

TEST(Identifiers, haveTheFixedNumbers) {
    const auto types = listed();
    for (const Row& row : fixedOrder) {
        const auto type = std::find_if(types.begin(), types.end(),
                                       [&row](const Listed& one) { return one.name == row.name; });
        ASSERT_NE(type, types.end()) << row.name;
        EXPECT_EQ(Types::Identifiers::typeName(type->identifier), row.name);
        if (row.identifier != 0) {
            EXPECT_EQ(static_cast<int>(type->identifier), row.identifier) << row.name;
        }
    }
}

TEST(Identifiers, areOfOneTypeEach) {
    std::vector<unsigned> numbers;
    for (const Listed& type : listed()) {
        numbers.push_back(type.identifier);
    }
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(std::adjacent_find(numbers.begin(), numbers.end()), numbers.end());
}

TEST(Identifiers, nameNothingForANumberWithoutType) {
    for (unsigned number : {0U, 12U, 31U, 32U, 40U, 0xFFFFFFFFU}) {
        const auto type = static_cast<Types::Identifiers::Identifier>(number);
        EXPECT_EQ(Types::Identifiers::typeName(type), nullptr) << number;
        EXPECT_EQ(Types::Identifiers::typeSize(type), 0) << number;
    }
}

// Read as the type that it derives from, a value keeps its number.
static_assert(std::is_base_of_v<Types::Int64, Types::Position>);
static_assert(std::is_base_of_v<Types::Int64, Types::Length>);
static_assert(std::is_base_of_v<Types::UInt8, Types::Orientation>);
static_assert(std::is_base_of_v<Types::UInt8, Types::SignalStandard>);

class WhatPositionIs : public Types::Visitors::NullVisitor {
public:
    using NullVisitor::visit;
    void visit(const Types::Int64&) override { FAIL() << "visited as Int64"; }
    void visit(const Types::Position& position) override {
        number = static_cast<const Types::Int64&>(position).value();
    }
    Types::int64 number = 0;
};

TEST(Position, isVisitedAsPositionAndReadAsInt64) {
    const Types::Position position(-1234567890123);
    WhatPositionIs visitor;
    position.accept(visitor);
    EXPECT_EQ(visitor.number, -1234567890123);
}

} // namespace
} // namespace Corvid::Testing
