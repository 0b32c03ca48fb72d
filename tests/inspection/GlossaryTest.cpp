#include "inspection/Glossary.h"

#include "host/base/Text.h"
#include "inspection/LabelText.h"

#include <gmock/gmock.h>

#include <set>

using namespace Corvid;
using namespace Corvid::Inspection;
using namespace Corvid::MetaMetadata;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const Dictionary& builtIn() {
    static const auto dictionary = Dictionary::builtIn();
    return *dictionary;
}

const Glossary& glossary() {
    static const Glossary all(builtIn());
    return all;
}

std::vector<std::string> namesOf(const Glossary::Entries& entries) {
    std::vector<std::string> names;
    std::transform(entries.begin(), entries.end(), std::back_inserter(names),
                   [](const auto* entry) { return entry->names.front(); });
    return names;
}

std::vector<std::string> found(const std::string& text) {
    return namesOf(glossary().find(text).entries);
}

std::string dotted(const Types::UniversalLabel& label) {
    return Platform::toUtf8(label.toString());
}

TEST(Glossary, findsEveryDefinitionByItsLabelWhateverTheVersion) {
    std::size_t count = 0;
    std::for_each(builtIn().metaElementBegin(), builtIn().metaElementEnd(),
                  [&count](const MetaElement* element) {
                      if (++count % 10 != 0) {
                          return;
                      }
                      auto label = element->label();
                      label[7] ^= 0x5A;
                      const auto result = glossary().find(dotted(label));
                      EXPECT_EQ(result.match, Glossary::Match::label);
                      ASSERT_EQ(result.entries.size(), 1U);
                      EXPECT_EQ(std::get<const MetaElement*>(result.entries[0]->subject), element);
                  });
    EXPECT_GT(count, 1000U);
}

TEST(Glossary, findsSetsByKeysOfEveryCoding) {
    for (const char* coding : {"53", "13", "06", "7f"}) {
        EXPECT_THAT(
            found("06.0e.2b.34.02." + std::string(coding) + ".01.77.0d.01.01.01.01.01.2f.00"),
            ElementsAre("Preface"));
    }
    EXPECT_THAT(found("060e2b34025301010d01020101050100"), ElementsAre("PrimerPack"))
        << "a pack, though its coding is another one";
    EXPECT_THAT(found("06.0e.2b.34.04.53.01.01.0d.01.01.01.01.01.2f.00"), IsEmpty());
}

TEST(Glossary, findsRegisteredLabelsTypesAndProperties) {
    EXPECT_THAT(found("urn:smpte:ul:060e2b34.0401017f.04010101.01020000"),
                ElementsAre("ITU-R BT.709 Transfer Characteristic"))
        << "the label, not the member that stands for it as well";
    EXPECT_THAT(found("06.0e.2b.34.01.04.01.01.01.01.01.00.00.00.00.00"), ElementsAre("UInt8"));
    EXPECT_THAT(found("06.0e.2b.34.01.01.01.05.05.30.04.06.00.00.00.00"),
                ElementsAre("IndexEditRate"));
    EXPECT_THAT(found("ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff"), IsEmpty());
}

TEST(Glossary, findsLocalTags) {
    for (const char* tag : {"3c0a", "3C.0A", "0x3C0A"}) {
        EXPECT_THAT(found(tag), ElementsAre("InstanceUID")) << tag;
        EXPECT_EQ(glossary().find(tag).match, Glossary::Match::localTag);
    }
    EXPECT_THAT(found("3f0b"), ElementsAre("IndexEditRate")) << "only index tables have it";
    std::size_t count = 0;
    std::for_each(builtIn().metaElementBegin(), builtIn().metaElementEnd(),
                  [&count](const MetaElement* element) {
                      if (element->staticLocalTag() != 0) {
                          ++count;
                          const auto tag = Types::LocalTag(element->staticLocalTag());
                          const auto entries =
                              glossary().find(Platform::toUtf8(tag.toString())).entries;
                          ASSERT_EQ(entries.size(), 1U);
                          EXPECT_EQ(std::get<const MetaElement*>(entries[0]->subject), element);
                      }
                  });
    EXPECT_GT(count, 200U);
    for (const char* tag : {"00.00", "8001", "7fff"}) {
        EXPECT_NE(glossary().find(tag).match, Glossary::Match::localTag) << tag;
    }
    EXPECT_THAT(found("8001"), IsEmpty());
    EXPECT_EQ(glossary().find("2020").match, Glossary::Match::partOfName) << "ITU-R BT.2020";
}

TEST(Glossary, findsWhateverHasAName) {
    std::set<std::string> seen;
    std::size_t kinds[std::variant_size_v<Subject>] = {};
    const auto everything = glossary().find("e").entries;
    ASSERT_GT(everything.size(), 5000U);
    for (std::size_t i = 0; i < everything.size(); i += 29) {
        ++kinds[everything[i]->subject.index()];
        for (const std::string& name : everything[i]->names) {
            const auto result = glossary().find(name);
            EXPECT_EQ(result.match, Glossary::Match::name) << name;
            auto all = result.entries;
            all.insert(all.end(), result.namesakes.begin(), result.namesakes.end());
            EXPECT_THAT(all, Contains(everything[i])) << name;
        }
    }
    for (const std::size_t count : kinds) {
        EXPECT_GT(count, 0U) << "of each kind there is something";
    }
}

TEST(Glossary, prefersTheClosestName) {
    EXPECT_THAT(found("Event"), ElementsAre("Event"));
    EXPECT_THAT(found("event"), ElementsAre("event"));
    EXPECT_THAT(namesOf(glossary().find("event").namesakes), ElementsAre("Event"));
    EXPECT_THAT(found("EVENT"), ElementsAre("Event", "event"));
    EXPECT_THAT(found("Sequence"), ElementsAre("Sequence"));
    EXPECT_THAT(namesOf(glossary().find("Sequence").namesakes), ElementsAre("TrackSegment"));
    EXPECT_THAT(found("rp210:SampleRate"), ElementsAre("SampleRate"));
    EXPECT_THAT(found("s377m:SampleRate"), IsEmpty());
    EXPECT_EQ(glossary().find("sample rate").match, Glossary::Match::name);
    EXPECT_EQ(glossary().find("ample rat").match, Glossary::Match::partOfName);
}

TEST(Glossary, knowsTheNamesOfOtherStandards) {
    const std::pair<const char*, const char*> aliases[] = {
        {"DM Segment", "DescriptiveMarker"},
        {"dmsegment", "DescriptiveMarker"},
        {"Body SID", "EssenceStreamID"},
        {"BodySID", "EssenceStreamID"},
        {"Generation UID", "GenerationUID"},
        {"LinkedGenerationID", "GenerationUID"},
        {"Structural Component", "Component"},
        {"InstanceID", "InstanceUID"},
        {"Mob", "Package"},
        {"Rounded Timecode Base", "FramesPerSecond"}};
    for (const auto& [alias, name] : aliases) {
        EXPECT_THAT(found(alias), ElementsAre(name)) << alias;
    }
}

TEST(Glossary, findsPartsAndWords) {
    EXPECT_THAT(found("frame wrapped aes3"), ElementsAre("MXF-GC Frame-wrapped AES3 audio data"));
    EXPECT_THAT(found("channelstatusmode_m"), ElementsAre("ChannelStatusMode_Minimum"));
    EXPECT_THAT(found("frame wrapped nothing"), IsEmpty());
    EXPECT_THAT(found(""), IsEmpty());
    EXPECT_THAT(found("--"), IsEmpty());
}

TEST(Glossary, knowsWhatExtensionsAdd) {
    Dictionary::Texts texts;
    texts.push_back({"scanner",
                     "namespace s377m urn:SMPTE:S377M\nnamespace scanner urn:example:Scanner\n"
                     "set scanner:Report 06.0e.2b.34.02.53.01.01.0f.7e.01.00.00.00.01.00 "
                     "s377m:DescriptiveObject concrete\n"
                     "property scanner:Speed 06.0e.2b.34.01.01.01.01.0f.7e.01.00.00.00.01.01 7a.01 "
                     "UInt8 required -\n"
                     // Something that the registers know, and header metadata does not.
                     "property scanner:AGICOA 06.0e.2b.34.01.01.01.01.01.10.02.01.00.00.00.00 - "
                     "UInt8 optional -\n"});
    const auto extended = Dictionary::extend(builtIn(), texts);
    const Glossary all(*extended);
    const auto found = [&all](const char* text) { return namesOf(all.find(text).entries); };
    EXPECT_THAT(found("scanner:Report"), ElementsAre("Report"));
    EXPECT_THAT(found("06.0e.2b.34.02.13.01.01.0f.7e.01.00.00.00.01.00"), ElementsAre("Report"));
    EXPECT_THAT(found("7a01"), ElementsAre("Speed"));
    EXPECT_THAT(found("AGICOAID"), ElementsAre("AGICOA")) << "one entry, with both names";
    EXPECT_THAT(found("06.0e.2b.34.01.01.01.01.01.10.02.01.00.00.00.00"), ElementsAre("AGICOA"));
}

TEST(Glossary, suggestsWhatIsNear) {
    EXPECT_THAT(glossary().near("Prefase"), ElementsAre("Preface"));
    EXPECT_THAT(glossary().near("MasteringDisplayPrimarys"), Contains("MasteringDisplayPrimaries"));
    EXPECT_THAT(glossary().near("qqqqqqqq"), IsEmpty());
    EXPECT_THAT(glossary().near("06.0e.2b.34.04.01.01.01.04.01.01.01.01.99.00.00").front(),
                "06.0e.2b.34.04.01.01.0d.04.01.01.01.01.13.00.00 Cinema Mezzanine DCDM Transfer "
                "Characteristic");
    EXPECT_THAT(glossary().near("ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff"), IsEmpty());
}

} // namespace
