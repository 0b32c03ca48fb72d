#include "host/dictionary/Dictionary.h"

#include "tests/dictionary/DictionarySupport.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <optional>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;

/// What the muxers of FFmpeg and GStreamer write, by the static tags of SMPTE ST 377-1 and ST 381.
struct Written {
    const char* set;
    std::vector<unsigned short> tags;
};

const std::vector<unsigned short> package = {0x4401, 0x4402, 0x4403, 0x4404, 0x4405, 0x4406};
const std::vector<unsigned short> segment = {0x0201, 0x0202};
const std::vector<unsigned short> file = {0x3001, 0x3002, 0x3004, 0x3006};
const std::vector<unsigned short> picture = {0x3201, 0x3202, 0x3203, 0x3204, 0x3205, 0x3206, 0x3207,
                                             0x3208, 0x3209, 0x320A, 0x320B, 0x320C, 0x320D, 0x320E,
                                             0x3210, 0x3212, 0x3215, 0x3217, 0x3219, 0x321A};
const std::vector<unsigned short> cdci = {0x3301, 0x3302, 0x3303, 0x3304,
                                          0x3305, 0x3306, 0x3307, 0x3308};
const std::vector<unsigned short> sound = {0x3D01, 0x3D02, 0x3D03, 0x3D06, 0x3D07};
const std::vector<unsigned short> wave = {0x3D09, 0x3D0A, 0x3D0B};

std::vector<unsigned short> operator+(std::vector<unsigned short> a,
                                      const std::vector<unsigned short>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::vector<Written>& written() {
    static const std::vector<Written> result = {
        {"Preface",
         {0x3C0A, 0x0102, 0x3B02, 0x3B03, 0x3B05, 0x3B06, 0x3B07, 0x3B08, 0x3B09, 0x3B0A, 0x3B0B}},
        {"Identification",
         {0x3C01, 0x3C02, 0x3C03, 0x3C04, 0x3C05, 0x3C06, 0x3C07, 0x3C08, 0x3C09}},
        {"ContentStorage", {0x1901, 0x1902}},
        {"EssenceData", {0x2701, 0x3F06, 0x3F07}},
        {"MaterialPackage", package},
        {"SourcePackage", package + std::vector<unsigned short>{0x4701}},
        {"TimelineTrack", {0x4801, 0x4802, 0x4803, 0x4804, 0x4B01, 0x4B02}},
        {"Sequence", segment + std::vector<unsigned short>{0x1001}},
        {"SourceClip", segment + std::vector<unsigned short>{0x1101, 0x1102, 0x1201}},
        {"Timecode", segment + std::vector<unsigned short>{0x1501, 0x1502, 0x1503}},
        {"MultipleDescriptor", file + std::vector<unsigned short>{0x3F01}},
        {"CDCIDescriptor", file + picture + cdci},
        {"RGBADescriptor",
         file + picture + std::vector<unsigned short>{0x3401, 0x3405, 0x3406, 0x3407}},
        {"MPEGVideoDescriptor", file + picture + cdci},
        {"SoundDescriptor", file + sound},
        {"WAVEPCMDescriptor", file + sound + wave},
        {"AES3PCMDescriptor",
         file + sound + wave + std::vector<unsigned short>{0x3D08, 0x3D0D, 0x3D0F, 0x3D10}},
        {"DataEssenceDescriptor", file + std::vector<unsigned short>{0x3E01}},
        {"ANCDataDescriptor", file + std::vector<unsigned short>{0x3E01}},
        {"TapeDescriptor", {0x3A01, 0x3A02, 0x3A03, 0x3A04}},
        {"TaggedValue", {0x5001, 0x5003}},
        {"AVCSubDescriptor", {}},
        {"FFV1PictureSubDescriptor", {}},
        {"JPEG2000SubDescriptor", {}},
    };
    return result;
}

using Bytes = std::string_view;

std::uint64_t number(Bytes bytes) {
    std::uint64_t result = 0;
    for (const char byte : bytes) {
        result = result << 8 | static_cast<unsigned char>(byte);
    }
    return result;
}

std::array<unsigned char, 16> sixteen(Bytes bytes) {
    std::array<unsigned char, 16> result{};
    std::memcpy(result.data(), bytes.data(), result.size());
    return result;
}

/// Takes one KLV triplet from the front: key and value. Nothing at the end, or after it.
std::optional<std::pair<Bytes, Bytes>> takeTriplet(Bytes& data) {
    if (data.size() < 17) {
        return std::nullopt;
    }
    const Bytes key = data.substr(0, 16);
    std::uint64_t length = static_cast<unsigned char>(data[16]);
    std::size_t start = 17;
    if (length > 0x80) {
        const std::size_t octets = length & 0x7F;
        length = number(data.substr(start, octets));
        start += octets;
    }
    if (start > data.size() || length > data.size() - start) {
        return std::nullopt;
    }
    const Bytes value = data.substr(start, length);
    data.remove_prefix(start + length);
    return std::pair(key, value);
}

/// Checks that the dictionary knows every set and property of a file's header partition.
/// @return how many properties there were.
int checkFile(const Dictionary& dictionary, const std::string& content) {
    Bytes data = content;
    std::map<std::uint64_t, Types::UniversalLabel> primer;
    int count = 0;
    while (const auto triplet = takeTriplet(data)) {
        const auto& [keyBytes, value] = *triplet;
        const KLV::Key key(sixteen(keyBytes));
        if (keyBytes.substr(8) == Bytes("\x0D\x01\x02\x01\x01\x05\x01\x00", 8)) {
            for (std::size_t i = 8; i + 18 <= value.size(); i += 18) {
                primer.emplace(number(value.substr(i, 2)), sixteen(value.substr(i + 2, 16)));
            }
        } else if (keyBytes.substr(8, 4) == Bytes("\x0D\x01\x01\x01", 4)) {
            const MetaMetadataSet* set = dictionary.findSet(key);
            EXPECT_NE(set, nullptr) << dotted(key);
            for (std::size_t i = 0; set != nullptr && i + 4 <= value.size();) {
                const auto label = primer.find(number(value.substr(i, 2)));
                EXPECT_NE(label, primer.end()) << nameOf(*set);
                if (label != primer.end()) {
                    EXPECT_NE(set->find(label->second), nullptr)
                        << nameOf(*set) << " " << dotted(label->second);
                }
                ++count;
                i += 4 + number(value.substr(i + 2, 2));
            }
        }
    }
    return count;
}

} // namespace

TEST(MuxerCoverage, knowsWhatFFmpegAndGStreamerWrite) {
    const auto dictionary = Dictionary::builtIn();
    for (const Written& expected : written()) {
        const MetaMetadataSet* set = findSetByTag(*dictionary, expected.set);
        ASSERT_NE(set, nullptr) << expected.set;
        EXPECT_TRUE(set->isConcrete()) << expected.set;
        for (const unsigned short tag : expected.tags) {
            const MetaElement* element = dictionary->findElementByStaticTag(tag);
            ASSERT_NE(element, nullptr) << expected.set << " " << std::hex << tag;
            EXPECT_NE(set->find(element->label()), nullptr)
                << expected.set << " " << nameOf(*element);
        }
    }
}

TEST(MuxerCoverage, knowsEverythingInTheirFiles) {
    if (samplesDir().empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    const auto dictionary = Dictionary::builtIn();
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("ffmpeg__", 0) == 0 || name.rfind("gstreamer__", 0) == 0) {
            SCOPED_TRACE(name);
            ++files;
            EXPECT_GT(checkFile(*dictionary, contentOf(entry.path())), 50);
        }
    }
    EXPECT_GT(files, 0);
}

} // namespace Corvid::Testing
