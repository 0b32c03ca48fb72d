#include "XMLBuilder/reader/strict/ReadStrictly.h"

#include "XMLBuilder/reader/DarkReader.h"
#include "XMLBuilder/reader/ReadSet.h"
#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
#include "host/metadata/PartitionMetadata.h"

#include <optional>

namespace Corvid::XMLBuilder {

namespace {

/// Hands the pieces of a document to the visitors.
class StrictReader final : public StreamHandler {
public:
    StrictReader(Metadata::PartitionMetadata& partition, const StrictReading& around,
                 Mistakes& mistakes)
        : partition_(partition), around_(around), mistakes_(mistakes) {}

    void instruction(const Instruction& instruction) override {
        if (!reading_) {
            instructions_.push_back(instruction);
        } else if (around_.stray) {
            around_.stray(instruction);
        }
    }

    void beginRoot(const DocumentNode& root) override {
        Supplement* const supplement = around_.begin ? around_.begin(instructions_) : nullptr;
        strictness_.emplace(*partition_.partitionDictionary().dictionary(), supplement, mistakes_);
        reading_.emplace(root, nullptr, partition_, nullptr, supplement, &*strictness_);
        strictness_->checkRoot(root);
    }

    bool isContainer(const DocumentNode& child) override {
        const bool is = reading_->isNamed(child, Names::groups, Names::floatingDarkMetadata);
        if (is) {
            strictness_->checkAttributes(child, nullptr, {});
        }
        return is;
    }

    void childOfRoot(const DocumentNode& child) override {
        readChildOfRoot(*reading_, child, sets_);
        sets_.clear();
    }

    void childOfContainer(const DocumentNode& child) override {
        readChildOfContainer(*reading_, child, sets_);
        sets_.clear();
    }

    void strayText(const DocumentNode& text) override { strictness_->refuseStrayText(text); }

    void endDocument() override {
        reading_->readWaiting();
        strictness_->finish(partition_);
        if (around_.end) {
            around_.end(*strictness_);
        }
    }

private:
    Metadata::PartitionMetadata& partition_;
    const StrictReading& around_;
    Mistakes& mistakes_;
    std::vector<Instruction> instructions_;
    std::optional<Strictness> strictness_;
    std::optional<Reading> reading_;
    SetList sets_;
};

} // namespace

void readStrictly(DataIO::DataSource& source, Metadata::PartitionMetadata& partition,
                  const StrictReading& reading, Mistakes& mistakes) {
    StrictReader reader(partition, reading, mistakes);
    parseStream(source, reader);
}

} // namespace Corvid::XMLBuilder
