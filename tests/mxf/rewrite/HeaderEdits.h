#pragma once

#include "host/mxf/rewrite/EditedHeader.h"
#include "tests/mxf/rewrite/LayoutOf.h"

/// What the tests of edited headers have in common: edits of files with small metadata.
namespace Corvid::mxf::HeaderEdits {

using Testing::fill;
using Testing::headerPartition;
using Testing::join;
using Testing::klv;
using Testing::labelOf;
using Testing::LayoutOf;
using Testing::MxfBuilder;
using Testing::number;
using Testing::property;
using Testing::structuralKey;
using Testing::uuid;
using TestBytes = Testing::Bytes;

inline Bytes bytesOf(const TestBytes& bytes) { return Bytes(bytes.begin(), bytes.end()); }

/// A label that no register has.
inline TestBytes newLabel(unsigned char last) {
    TestBytes label = Testing::hex("06.0e.2b.34.01.01.01.01.0e.7f.00.00.00.00.00.00");
    label[15] = last;
    return label;
}

inline TestBytes labelOfTag(unsigned tag) {
    for (const auto& [each, label] : Testing::standardLabels()) {
        if (each == tag) {
            return label;
        }
    }
    return {};
}

inline KLV::Key keyOf(const TestBytes& bytes) { return KLV::Key(bytes.data()); }

/// Puts the ranges into the bytes.
inline TestBytes patched(TestBytes bytes, const ByteRanges& ranges) {
    for (const ByteRange& range : ranges) {
        EXPECT_LE(range.end(), bytes.size());
        std::copy(range.bytes.begin(), range.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return bytes;
}

/// The file after an edit in place; empty where it doesn't fit.
inline TestBytes edited(const LayoutOf& of, const HeaderEdit& edit, ByteRanges* written = nullptr) {
    EditedHeader header(of.layout, edit);
    if (header.fit() != 0) {
        return {};
    }
    const ByteRanges ranges = differences(EditedHeader::segmentsOf(of.layout), header.segments());
    if (written != nullptr) {
        *written = ranges;
    }
    return patched(of.bytes, ranges);
}

inline std::uint64_t missing(const LayoutOf& of, const HeaderEdit& edit) {
    return EditedHeader(of.layout, edit).fit();
}

inline TestBytes fileOf(const TestBytes& metadata) {
    return MxfBuilder().add(headerPartition(metadata)).build();
}

inline HeaderEdit oneSet(SetChange change) {
    HeaderEdit edit;
    edit.changedSets.push_back(std::move(change));
    return edit;
}

inline SetChange changed(std::size_t item, unsigned tag, std::optional<TestBytes> value) {
    SetChange change;
    change.item = item;
    change.properties.push_back({{Types::u16(tag), 0}, {}});
    if (value) {
        change.properties.back().value = bytesOf(*value);
    }
    return change;
}

inline SetChange added(std::size_t item, const TestBytes& label, const TestBytes& value,
                       Types::u16 staticTag = 0) {
    SetChange change;
    change.item = item;
    change.added.push_back({labelOf(label), bytesOf(value), staticTag});
    return change;
}

inline NewSet newSet(std::size_t after, unsigned instance) {
    NewSet set;
    set.key = keyOf(structuralKey(Testing::identificationSet));
    set.after = after;
    set.properties.push_back({labelOf(Testing::instanceUIDLabel()), bytesOf(uuid(instance)), 0});
    return set;
}

/// A Preface (1) with a version, and a track (2) with a name.
inline TestBytes preface(const TestBytes& version = number(0x103, 2), const TestBytes& more = {},
                         unsigned octets = 4) {
    return Testing::set(structuralKey(Testing::prefaceSet), 1, {property(0x3B05, version), more},
                        octets);
}
inline TestBytes track(const TestBytes& name, const TestBytes& more = {}, unsigned octets = 4) {
    return Testing::set(structuralKey(Testing::timelineTrackSet), 2, {property(0x4802, name), more},
                        octets);
}
inline const TestBytes oldName = Testing::utf16(u"Old");
inline const TestBytes newName = Testing::utf16(u"A longer name");
inline const TestBytes primer = Testing::standardPrimer();
inline TestBytes primerWith(unsigned tag, const TestBytes& label) {
    auto entries = Testing::standardLabels();
    entries.emplace_back(tag, label);
    return Testing::primer(entries);
}
inline const TestBytes darkKlv = klv(uuid(7), {1, 2, 3}, 9);
inline const TestBytes identification = Testing::set(structuralKey(Testing::identificationSet), 3);

} // namespace Corvid::mxf::HeaderEdits
