#pragma once

#include "host/mxf/HeaderMetadataReader.h"

namespace Corvid::mxf {

/// Which partition's header metadata is wanted.
class PartitionChoice {
public:
    /// How a partition is chosen.
    enum class Kind : unsigned char {
        automatic, ///< the last complete copy that can be read
        header,
        footer,
        number,
    };

    static PartitionChoice automatic() noexcept { return {Kind::automatic, 0}; }
    static PartitionChoice header() noexcept { return {Kind::header, 0}; }
    static PartitionChoice footer() noexcept { return {Kind::footer, 0}; }
    /// @param number  the partition's place in the order of the file, from 0.
    static PartitionChoice numbered(std::size_t number) noexcept { return {Kind::number, number}; }

    Kind kind() const noexcept { return kind_; }
    std::size_t number() const noexcept { return number_; }

private:
    PartitionChoice(Kind kind, std::size_t number) noexcept : kind_(kind), number_(number) {}

    Kind kind_;
    std::size_t number_;
};

/// An MXF file that is read (SMPTE ST 377-1): its partitions and their header metadata.
///
/// Essence is never read, and no more of the file than partition packs and the metadata asked for,
/// so a file may have any size.
class CORVID_EXPORT File {
public:
    /// @param path        of the file; "-" is standard input.
    /// @param dictionary  the definitions of sets and properties.
    /// @param warnings    gets what is wrong with the file. Borrowed; must outlive the object.
    /// @throws IOError        the file can't be opened or read.
    /// @throws InvalidFormat  it is no MXF file.
    /// @throws InvalidLength  it ends inside its first partition pack.
    File(const std::string& path, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
         WarningSink& warnings);
    /// The same for bytes from anywhere.
    /// @throws InvalidArgument  there is no source, or no dictionary.
    File(Templates::auto_ptr<DataIO::RandomAccessSource> source,
         Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, WarningSink& warnings);
    ~File();

    /// The bytes before the header partition pack.
    std::uint64_t runIn() const noexcept { return originOf(header_).runIn; }

    /// All partitions that findPartitions() finds, in the order of the file; the header partition
    /// is the first. Read on first use; a pipe is then read to its end.
    /// @throws IOError  the file can't be read.
    const Partitions& partitions();

    /// Reads header metadata.
    ///
    /// The automatic choice is the last copy in the file whose partition is complete; one that
    /// can't be read as a whole gives way to the one before it, and where no partition is complete
    /// the last copy counts. Whatever is not the last complete copy is a warning. The choice of the
    /// header partition does not look for others, nor does it take another that is the first.
    /// @throws InvalidFormat    there is no such partition, or no header metadata in it.
    /// @throws IOError          the file can't be read.
    /// @throws LimitExceeded    a set is longer than greatestSetSize.
    HeaderMetadata readMetadata(PartitionChoice choice = PartitionChoice::automatic());

    const DataIO::RandomAccessSource& source() const noexcept { return *source_; }

private:
    HeaderMetadata readChosen(std::size_t number, const Partition& partition);
    HeaderMetadata readAutomatically();

    Templates::auto_ptr<DataIO::RandomAccessSource> source_;
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary_;
    WarningSink& warnings_;
    DataIO::ReadWindow window_;
    Partition header_;
    Partitions partitions_; ///< empty until asked for
};

} // namespace Corvid::mxf
