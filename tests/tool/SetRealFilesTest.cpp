#include "editing/values/AssignValue.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/Elements.h"
#include "host/metadata/MetadataSet.h"
#include "tests/editing/EditedClip.h"
#include "tests/editing/OtherValues.h"
#include "tests/support/Sanitizers.h"
#include "tests/tool/RunCommand.h"

#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>

using namespace Corvid;
using namespace Corvid::Testing;

namespace {

/// With sanitizers, the largest clips would take minutes.
bool isQuick(const std::filesystem::path& clip) {
#ifdef CORVID_ADDRESS_SANITIZER
    return std::filesystem::file_size(clip) < 30000;
#else
    return std::filesystem::exists(clip);
#endif
}

std::string joined(const std::vector<std::string>& texts) {
    std::string text;
    for (const std::string& each : texts) {
        text += (text.empty() ? "" : "\n") + each;
    }
    return text;
}

/// Gives properties values with one call of the command, and asks it for them.
class SetRealFiles : public ::testing::Test {
protected:
    /// Values by the InstanceUID of their set and the name of the property.
    using Values = std::map<std::pair<std::string, std::string>, std::string>;

    /// All properties that can be named: of sets with an InstanceUID and a class.
    void collect(const Metadata::PartitionMetadata& metadata) {
        arguments.clear();
        wanted.clear();
        for (const auto* const set : metadata) {
            if (!set->hasInstanceUID() || set->metaMetadataSet() == nullptr) {
                continue;
            }
            const std::string id = Platform::toUtf8(set->instanceUID().toString());
            const std::string name = MetaMetadata::prefixedName(*set->metaMetadataSet());
            for (const Metadata::Element* const element : elementsOf(*set)) {
                const auto& property = *element->definition();
                const std::string text = joined(Editing::textsOf(*element));
                wanted[{id, MetaMetadata::tagName(property)}] = text;
                arguments += name + "[InstanceUID=" + id + "]/" +
                             MetaMetadata::prefixedName(property) + "=" + text + '\0';
            }
        }
    }

    Outcome set(const std::string& options) const {
        shop.write("arguments", arguments);
        return shop.run("xargs -0 -x -s 2000000 -a arguments corvid set clip.mxf " + options);
    }

    Values found() const {
        Values values;
        const auto json = nlohmann::json::parse(shop.run("corvid get --json clip.mxf '*/*'").out);
        for (const auto& value : json["answers"][0]["values"]) {
            std::string& text = values[{value["instanceUID"], value["property"]}];
            text += (text.empty() ? "" : "\n") + value["value"].get<std::string>();
        }
        return values;
    }

    Workshop shop;
    std::string arguments; ///< each with a zero at its end
    Values wanted;
};

TEST_F(SetRealFiles, changesNothingWhereEveryValueIsTheSame) {
    for (const auto& path : realClips()) {
        if (!isQuick(path)) {
            continue;
        }
        SCOPED_TRACE(path.filename().string());
        std::filesystem::copy_file(path, shop.path() / "clip.mxf",
                                   std::filesystem::copy_options::overwrite_existing);
        const std::string before = shop.read("clip.mxf");
        EditedClip clip(Bytes(before.begin(), before.end()));
        collect(*clip.editor.readMetadata());
        EXPECT_GT(wanted.size(), 50U);
        const Outcome outcome = set("");
        EXPECT_EQ(outcome.out, "no change\n") << outcome.err;
        EXPECT_TRUE(shop.read("clip.mxf") == before);
    }
}

TEST_F(SetRealFiles, givesEveryPropertyTheOtherValueThatGetThenPrints) {
    for (const auto& path : realClips()) {
        if (!isQuick(path)) {
            continue;
        }
        SCOPED_TRACE(path.filename().string());
        std::filesystem::copy_file(path, shop.path() / "clip.mxf",
                                   std::filesystem::copy_options::overwrite_existing);
        const std::string before = shop.read("clip.mxf");
        EditedClip clip(Bytes(before.begin(), before.end()));
        const auto metadata = clip.editor.readMetadata();
        std::size_t others = 0;
        for (Metadata::Element* const element : elementsOf(*metadata)) {
            others += assignAnother(*metadata, *element) ? 1 : 0;
        }
        EXPECT_GT(others, 20U);
        collect(*metadata);
        const Outcome outcome = set("--allow-technical --no-identification --partitions " +
                                    std::to_string(clip.editor.chosen()));
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        const Values values = found();
        for (const auto& [place, text] : wanted) {
            const auto value = values.find(place);
            EXPECT_EQ(value == values.end() ? "" : value->second, text)
                << place.first << " " << place.second;
        }
    }
}

} // namespace
