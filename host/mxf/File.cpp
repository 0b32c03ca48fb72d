#include "host/mxf/File.h"

#include "host/base/Exceptions.h"
#include "host/dataio/OpenSource.h"

namespace Corvid::mxf {

namespace {

std::string describe(std::size_t number, const Partition& partition) {
    return "partition " + std::to_string(number) + " (" + partition.pack.kindName() + ", " +
           partition.pack.statusName() + ")";
}

/// What an owner holds, which must be something.
template <class Owner> auto& held(const Owner& owner, const char* what) {
    if (!owner) {
        throw Exceptions::InvalidArgument(std::string("no ") + what + ", expected one",
                                          CORVID_HERE);
    }
    return *owner;
}

} // namespace

File::File(const std::string& path, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
           WarningSink& warnings)
    : File(DataIO::openSource(path), std::move(dictionary), warnings) {}

File::File(Templates::auto_ptr<DataIO::RandomAccessSource> source,
           Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, WarningSink& warnings)
    : source_(std::move(source)), dictionary_(std::move(dictionary)), warnings_(warnings),
      window_(held(source_, "source to read an MXF file from")),
      header_(findHeaderPartition(window_, warnings)) {
    held(dictionary_, "dictionary to read an MXF file with");
}

File::~File() = default;

const Partitions& File::partitions() {
    if (partitions_.empty()) {
        partitions_ = findPartitions(window_, header_, warnings_);
    }
    return partitions_;
}

HeaderMetadata File::readMetadata(PartitionChoice choice) {
    switch (choice.kind()) {
    case PartitionChoice::Kind::automatic:
        break;
    case PartitionChoice::Kind::header:
        if (header_.pack.kind != PartitionKind::header) {
            throw Exceptions::InvalidFormat(std::string("no header partition: the first is a ") +
                                                header_.pack.kindName() + " partition",
                                            CORVID_HERE);
        }
        return readChosen(0, header_);
    case PartitionChoice::Kind::footer: {
        const Partitions& all = partitions();
        for (std::size_t i = all.size(); i != 0; --i) {
            if (all[i - 1].pack.kind == PartitionKind::footer) {
                return readChosen(i - 1, all[i - 1]);
            }
        }
        throw Exceptions::InvalidFormat(
            "no footer partition among the " + std::to_string(all.size()) +
                (all.size() == 1 ? " partition" : " partitions") + " of the file",
            CORVID_HERE);
    }
    case PartitionChoice::Kind::number:
        if (choice.number() >= partitions().size()) {
            throw Exceptions::InvalidFormat("no partition " + std::to_string(choice.number()) +
                                                ", the last is " +
                                                std::to_string(partitions().size() - 1),
                                            CORVID_HERE);
        }
        return readChosen(choice.number(), partitions()[choice.number()]);
    }
    return readAutomatically();
}

HeaderMetadata File::readChosen(std::size_t number, const Partition& partition) {
    const auto start = findHeaderMetadata(window_, partition);
    if (!start) {
        throw Exceptions::InvalidFormat("no header metadata in " + describe(number, partition),
                                        CORVID_HERE);
    }
    HeaderMetadata result = readHeaderMetadata(window_, partition, *start, dictionary_, warnings_);
    result.partition = number;
    return result;
}

HeaderMetadata File::readAutomatically() {
    const Partitions& all = partitions();
    const auto warn = [&](const WarningKind& kind, std::size_t number, const std::string& text) {
        Warning warning(kind, describe(number, all[number]) + ": " + text);
        warning.offset = all[number].offset();
        warnings_.warn(warning);
    };

    // Incomplete partitions come into play when no complete one is whole. The best that is not
    // whole is kept for the case that nothing is.
    HeaderMetadata best;
    Templates::vector<std::size_t> passedOver;
    std::string lastError;
    for (const bool complete : {true, false}) {
        for (std::size_t number = all.size(); number-- != 0;) {
            if (all[number].pack.isComplete() != complete) {
                continue;
            }
            const auto start = findHeaderMetadata(window_, all[number]);
            if (!start) {
                continue;
            }
            HeaderMetadata result;
            try {
                result = readHeaderMetadata(window_, all[number], *start, dictionary_, warnings_);
            } catch (const Exceptions::LimitExceeded& error) {
                lastError = Platform::toUtf8(error.message());
                warn(WarningKinds::metadataUnreadable, number,
                     "the header metadata can't be read: " + lastError);
                continue;
            }
            result.partition = number;
            if (result.isWhole) {
                for (const std::size_t other : passedOver) {
                    warn(WarningKinds::metadataNotWhole, other,
                         "the header metadata is not whole, so that of " +
                             describe(number, all[number]) + " is used");
                }
                if (!complete) {
                    warn(WarningKinds::incompleteMetadata, number,
                         "its header metadata is used, because no complete partition has whole "
                         "header metadata");
                }
                return result;
            }
            passedOver.push_back(number);
            const bool isBetter =
                !best.metadata || (best.metadata->size() == 0 && result.metadata->size() != 0);
            if (isBetter) {
                best = std::move(result);
            }
        }
    }
    if (!best.metadata) {
        throw Exceptions::InvalidFormat(
            !lastError.empty() ? "no header metadata can be read: " + lastError
            : all.size() == 1  ? "no header metadata in " + describe(0, all[0]) +
                                    ", and no other partition was found"
                              : "no header metadata in any of the " + std::to_string(all.size()) +
                                    " partitions of the file",
            CORVID_HERE);
    }
    warn(WarningKinds::noWholeMetadata, best.partition,
         "its header metadata is used, because no partition has whole header metadata");
    return best;
}

} // namespace Corvid::mxf
