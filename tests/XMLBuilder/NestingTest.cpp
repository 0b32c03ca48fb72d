#include "XMLBuilder/XMLBuilder.h"
#include "host/base/Exceptions.h"
#include "tests/support/MemoryInUse.h"
#include "tests/support/Model.h"
#include "tests/support/ThingsDictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/dom/DOMNode.hpp>

#include <memory>

namespace Corvid::Testing {
namespace {

using Number = unsigned;

constexpr Number preface = 1;
/// The number of the last set that a chain below the Preface may have.
constexpr Number lastAllowed = 256;

/// Sets that refer to each other by their numbers. The Preface is there from the beginning.
class Sets {
public:
    Sets() { owns(add(preface, "Preface"), preface + 1, "ContentStorageObject"); }

    Model::Set& add(Number number, const char* tag = "Thing") {
        auto& set = model.set(tag, 0);
        set_(set, number);
        return set;
    }

    void owns(Model::Set& set, Number target, const char* tag = "StrongReference") {
        refer(model.element(set, tag), target);
    }

    static void refer(Metadata::Element& element, Number target) {
        const Types::UUID identifier = identifierOf(target);
        ASSERT_TRUE(element.parse(Types::ByteView{identifier.rawBuffer(), 16}));
    }

    void ownsAll(Model::Set& set, std::initializer_list<Number> targets) {
        std::string bytes{0, 0, 0, static_cast<char>(targets.size()), 0, 0, 0, 16};
        for (const Number target : targets) {
            const Types::UUID identifier = identifierOf(target);
            bytes.append(reinterpret_cast<const char*>(identifier.rawBuffer()), 16);
        }
        ASSERT_TRUE(model.element(set, "StrongReferenceArray").parse(Model::view(bytes)));
    }

    /// Adds sets of which each owns the next, whether that is there or not.
    void chain(Number first, Number last) {
        for (Number number = first; number <= last; ++number) {
            owns(add(number), number + 1);
        }
    }

    static Types::UUID identifierOf(Number number) {
        std::array<Types::u8, 16> bytes{};
        bytes[14] = static_cast<Types::u8>(number >> 8);
        bytes[15] = static_cast<Types::u8>(number);
        return Types::UUID(bytes);
    }

    const Model::Set* find(Number number) const {
        return &model.partition.resolve(identifierOf(number)).front();
    }

    Model model = Model::extendedBy(text());

private:
    static const std::string& text() {
        static const std::string dictionary = thingsDictionary();
        return dictionary;
    }

    void set_(Model::Set& set, Number number) {
        static_cast<Metadata::SimpleElement*>(
            set.find(Metadata::Structural::StructuralMetadataULs::instanceUID()))
            ->set(identifierOf(number).clone());
        model.partition.forgetReferences();
    }
};

struct Case {
    const char* name;
    void (*fill)(Sets& sets);
    Number refused; ///< the set that the message names; 0 where the document is written
    bool skipNonStructural = false;
    Number start = preface;
};

void PrintTo(const Case& c, std::ostream* to) { *to << c.name; }
std::string nameOfCase(const testing::TestParamInfo<Case>& info) { return info.param.name; }

class Nesting : public testing::TestWithParam<Case> {};

/// What the writer says; empty where it writes a document.
std::string outcomeOf(Sets& sets, const Case& c) {
    try {
        EXPECT_TRUE(XMLBuilder::partition2XML(&sets.model.partition, sets.find(c.start), true,
                                              c.skipNonStructural));
        return {};
    } catch (const Exceptions::LimitExceeded& error) {
        return Platform::toUtf8(error.message());
    }
}

TEST_P(Nesting, refusesWhatNestsTooDeepAndNothingElse) {
    Sets sets;
    GetParam().fill(sets);
    EXPECT_EQ(outcomeOf(sets, GetParam()),
              GetParam().refused == 0
                  ? ""
                  : "set " + Platform::toUtf8(Sets::identifierOf(GetParam().refused).toString()) +
                        ": strong references nest deeper than 256 sets, write the references as "
                        "links instead");
}

INSTANTIATE_TEST_SUITE_P(
    , Nesting,
    testing::Values(
        Case{"ChainAtTheLimit", [](Sets& sets) { sets.chain(2, lastAllowed); }, 0},
        Case{"ChainBeyondTheLimit", [](Sets& sets) { sets.chain(2, lastAllowed + 1); },
             lastAllowed + 1},
        Case{"ChainFarBeyondTheLimit", [](Sets& sets) { sets.chain(2, 5000); }, lastAllowed + 1},
        Case{"ChainThatEndsInACycle",
             [](Sets& sets) {
                 sets.chain(2, lastAllowed - 1);
                 sets.owns(sets.add(lastAllowed), 2);
             },
             0},
        Case{"ManySetsBesideEachOther",
             [](Sets& sets) {
                 auto& storage = sets.add(2);
                 sets.ownsAll(storage, {3, 300, 600});
                 sets.chain(3, 256);
                 sets.chain(300, 553);
                 sets.chain(600, 853);
             },
             0},
        Case{"WeakReferencesLeadNowhere",
             [](Sets& sets) {
                 sets.chain(2, lastAllowed - 1);
                 auto& last = sets.add(lastAllowed);
                 sets.owns(last, lastAllowed + 1, "WeakReference");
                 sets.add(lastAllowed + 1);
             },
             0},
        Case{"MisplacedReferencesAreFollowed",
             [](Sets& sets) {
                 sets.chain(2, lastAllowed - 1);
                 Sets::refer(sets.model.misplaced(sets.add(lastAllowed), "StrongReference"),
                             lastAllowed + 1);
                 sets.add(lastAllowed + 1);
             },
             lastAllowed + 1},
        Case{"ReferencesWithoutPlaceInTheOrderLeadNowhere",
             [](Sets& sets) {
                 sets.chain(2, lastAllowed - 1);
                 auto& last = sets.add(lastAllowed);
                 const auto attribute =
                     sets.model.misplaced(sets.add(9999), "StrongReference").metaAttribute();
                 Sets::refer(last.createElement(
                                 Types::UniversalLabel(std::array<Types::u8, 16>{0x7F}), attribute),
                             lastAllowed + 1);
                 sets.add(lastAllowed + 1);
             },
             0},
        Case{"SetsThatAreReachedOnAShorterWayFirst",
             [](Sets& sets) {
                 sets.ownsAll(sets.add(2), {200, 3});
                 sets.chain(3, 400);
             },
             0},
        Case{"SetsThatAreReachedOnALongerWayFirst",
             [](Sets& sets) {
                 sets.ownsAll(sets.add(2), {3, 200});
                 sets.chain(3, 400);
             },
             lastAllowed + 1},
        Case{"PropertiesInTheOrderOfTheDocument",
             [](Sets& sets) {
                 auto& storage = sets.add(2);
                 sets.ownsAll(storage, {200}); // a later property than the other
                 sets.owns(storage, 3);
                 sets.chain(3, 400);
             },
             lastAllowed + 1},
        Case{"InvalidElementsComeFirst",
             [](Sets& sets) {
                 auto& storage = sets.add(2);
                 sets.owns(storage, 3);
                 Sets::refer(sets.model.misplaced(storage, "StrongReference"), 200);
                 sets.chain(3, 400);
             },
             0},
        Case{"SetsThatAreNotStructuralAreLeftOut",
             [](Sets& sets) { sets.chain(2, lastAllowed + 1); }, 0, true},
        Case{"StructuralSetsAreNotLeftOut",
             [](Sets& sets) {
                 for (Number number = 2; number != lastAllowed + 1; ++number) {
                     sets.owns(sets.add(number, "EssenceGroup"), number + 1, "StillFrame");
                 }
                 sets.add(lastAllowed + 1, "EssenceGroup");
             },
             lastAllowed + 1, true},
        Case{"AnotherStartThatIsNotSoFarFromTheEnd", [](Sets& sets) { sets.chain(2, 400); }, 0,
             false, 200},
        Case{"AnotherStartThatIsTooFarFromTheEnd", [](Sets& sets) { sets.chain(2, 400); }, 256 + 99,
             false, 99},
        Case{"SetsOutsideTheTree", [](Sets& sets) { sets.chain(3, 400); }, 256 + 3},
        Case{"SetsOutsideTheTreeWithTheLastOneFirst",
             [](Sets& sets) {
                 sets.add(400);
                 for (Number number = 399; number != 2; --number) {
                     sets.owns(sets.add(number), number + 1);
                 }
             },
             0}),
    nameOfCase);

TEST(NestingAlone, leavesNothingBehindHoweverOftenItRefuses) {
    Sets sets;
    sets.chain(2, lastAllowed + 1);
    Utf16Text text;
    const auto refuse = [&] {
        EXPECT_THROW(XMLBuilder::partition2XML(&sets.model.partition, true, false),
                     Exceptions::LimitExceeded);
        EXPECT_THROW(XMLBuilder::partition2XML(&sets.model.partition, true, false,
                                               XMLUtils::EncodingType::utf8, text),
                     Exceptions::LimitExceeded);
    };
    refuse(); // what is made once per process is no part of it
    const auto before = memoryInUse();
    for (int i = 0; i != 20; ++i) {
        refuse();
    }
    if (before) {
        EXPECT_LE(*memoryInUse(), *before + 4096);
    }
}

} // namespace
} // namespace Corvid::Testing
