// What corvid info says beside what mediainfo and ffprobe say of the same files. Both read the
// essence, too, and fill in what they find there.

#include "tests/tool/RunCommand.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>

namespace Corvid::Testing {
namespace {

using Json = nlohmann::json;

struct Difference {
    const char* reader;
    const char* file;
    const char* what;
    const char* reason;
};

constexpr Difference differences[] = {
    {"mediainfo", "d10-imx30.mxf", "sound codec",
     "the descriptor has no label of a sound coding; mediainfo knows that D-10 has AES3"},
    {"mediainfo", "ebu__bmx-rdd9-anc.mxf", "sound duration",
     "mediainfo counts the length in SampleRate, which is that of the sound; it is in edit units"},
    {"mediainfo", "fraunhofer-iis__67-203-audio-track-file-compliant.mxf", "sound tracks",
     "mediainfo does not know the container of sound with metadata"},
    {"ffprobe", "freemxf.org__small-wav.mxf", "sound bits",
     "QuantizationBits is 8; ffprobe shows 16 for PCM without a label of its coding"},
    {"ffprobe", "mxflib__mxflib-playlist.mxf", "picture tracks",
     "ffprobe shows one of the two picture tracks of the file package"},
    {"ffprobe", "d10-imx30.mxf", "height",
     "ffprobe shows the coded picture of 608 lines, of which 576 are displayed"},
    {"ffprobe", "d10-imx30.mxf", "sound codec",
     "the descriptor has no label of a sound coding; ffprobe takes the sound for plain PCM"},
};

const char* reasonOf(const std::string& reader, const std::string& file, const std::string& what) {
    for (const Difference& each : differences) {
        if (reader == each.reader && file == each.file && what == each.what) {
            return each.reason;
        }
    }
    return nullptr;
}

/// What we call what the others call by another name: a part of ours.
const std::multimap<std::string, std::string> codecs = {
    {"MPEG Video", "MPEG"}, {"VC-3", "VC-3"},       {"PCM", "PCM"},
    {"AVC", "AVC"},         {"DV", "DV"},           {"JPEG 2000", "JPEG 2000"},
    {"IAB", "immersive"},   {"JPEG 2000", "HTJ2K"}, {"Uncompressed pictures", "uncompressed"},
    {"Alaw", "A-law"},      {"mpeg2video", "MPEG"}, {"h264", "AVC"},
    {"dnxhd", "VC-3"},      {"dvvideo", "DV"},      {"jpeg2000", "JPEG 2000"},
    {"pcm_s16le", "PCM"},   {"pcm_s24le", "PCM"},   {"pcm_alaw", "A-law"},
    {"mpeg4", "MPEG-4"},    {"prores", "ProRes"}};

std::string textOf(const Json& json, const char* key) {
    return json.contains(key) && json[key].is_string() ? json[key].get<std::string>() : "";
}

std::optional<double> numberOf(const Json& json, const char* key) {
    const std::string text = textOf(json, key);
    return text.empty() ? std::nullopt : std::make_optional(std::strtod(text.c_str(), nullptr));
}

std::optional<double> ratio(const Json& rate) {
    return rate.is_object() && rate["denominator"] != 0
               ? std::make_optional(rate["numerator"].get<double>() /
                                    rate["denominator"].get<double>())
               : std::nullopt;
}

std::optional<double> numberAt(const Json& json, const char* key) {
    return json[key].is_number() ? std::make_optional(json[key].get<double>()) : std::nullopt;
}

class Comparison {
public:
    Comparison(std::string reader, std::string file, int& compared)
        : reader_(std::move(reader)), file_(std::move(file)), compared_(compared) {}

    /// Compares what both say.
    void expect(const std::string& what, const std::optional<double>& theirs,
                const std::optional<double>& ours, double tolerance = 0) {
        if (theirs && ours) {
            ++compared_;
            check(what, std::abs(*theirs - *ours) <= tolerance, std::to_string(*theirs),
                  std::to_string(*ours));
        }
    }
    void expect(const std::string& what, const std::string& theirs, const std::string& ours) {
        if (!theirs.empty() && !ours.empty()) {
            ++compared_;
            check(what, theirs == ours, theirs, ours);
        }
    }
    void expectCodec(const std::string& what, const std::string& theirs, const std::string& ours) {
        const auto [first, last] = codecs.equal_range(theirs);
        if (first == last || ours.empty()) {
            return;
        }
        ++compared_;
        bool isKnown = false;
        for (auto each = first; each != last; ++each) {
            isKnown = isKnown || ours.find(each->second) != std::string::npos;
        }
        check(what, isKnown, theirs, ours);
    }

private:
    void check(const std::string& what, bool isSame, const std::string& theirs,
               const std::string& ours) {
        const char* const reason = reasonOf(reader_, file_, what);
        if (reason == nullptr) {
            EXPECT_TRUE(isSame) << file_ << ": " << what << ": " << reader_ << " " << theirs
                                << ", corvid " << ours;
        } else {
            EXPECT_FALSE(isSame) << file_ << ": " << what << " is the same, but not because "
                                 << reason;
        }
    }

    std::string reader_;
    std::string file_;
    int& compared_;
};

std::vector<Json> tracksOf(const Json& list, const char* key, const char* kind) {
    std::vector<Json> tracks;
    for (const Json& each : list) {
        if (each[key] == kind) {
            tracks.push_back(each);
        }
    }
    return tracks;
}

std::optional<double> secondsOf(const Json& stream) {
    const auto length = numberAt(stream, "length");
    const auto rate = ratio(stream["editRate"]);
    return length && rate && *rate > 0 ? std::make_optional(*length / *rate) : std::nullopt;
}

constexpr double millisecond = 0.001;

void comparePicture(Comparison& compare, const Json& theirs, const Json& ours) {
    compare.expect("width", numberOf(theirs, "Width"), numberAt(ours, "width"));
    compare.expect("height", numberOf(theirs, "Height"), numberAt(ours, "height"));
    compare.expect("rate", numberOf(theirs, "FrameRate"), ratio(ours["rate"]), millisecond);
    compare.expect("bits", numberOf(theirs, "BitDepth"), numberAt(ours, "bits"));
    compare.expect("sampling", textOf(theirs, "ChromaSubsampling"), textOf(ours, "sampling"));
    compare.expect("picture duration", numberOf(theirs, "Duration"), secondsOf(ours), millisecond);
    compare.expectCodec("picture codec", textOf(theirs, "Format"), textOf(ours, "codec"));
}

void compareSound(Comparison& compare, const Json& theirs, const Json& ours) {
    compare.expect("channels", numberOf(theirs, "Channels"), numberAt(ours, "channels"));
    compare.expect("sampling rate", numberOf(theirs, "SamplingRate"), ratio(ours["sampleRate"]));
    compare.expect("sound bits", numberOf(theirs, "BitDepth"), numberAt(ours, "bits"));
    compare.expect("sound duration", numberOf(theirs, "Duration"), secondsOf(ours), millisecond);
    compare.expectCodec("sound codec", textOf(theirs, "Format"), textOf(ours, "codec"));
}

/// @return how many values mediainfo and we have.
int compareMediainfo(const Workshop& shop, const std::filesystem::path& path) {
    const std::string clip = "'" + path.string() + "'";
    const Json theirs =
        Json::parse(shop.run("mediainfo --Output=JSON " + clip).out)["media"]["track"];
    const Json ours = Json::parse(shop.run("corvid info --json " + clip).out)["essence"];
    int compared = 0;
    Comparison compare("mediainfo", path.filename().string(), compared);
    const auto pictures = tracksOf(theirs, "@type", "Video");
    const auto ourPictures = tracksOf(ours, "kind", "picture");
    compare.expect("picture tracks", pictures.size(), ourPictures.size());
    for (std::size_t i = 0; i != std::min(pictures.size(), ourPictures.size()); ++i) {
        comparePicture(compare, pictures[i], ourPictures[i]);
    }
    const auto sounds = tracksOf(theirs, "@type", "Audio");
    const auto ourSounds = tracksOf(ours, "kind", "sound");
    compare.expect("sound tracks", sounds.size(), ourSounds.size());
    for (std::size_t i = 0; i != std::min(sounds.size(), ourSounds.size()); ++i) {
        compareSound(compare, sounds[i], ourSounds[i]);
    }
    return compared;
}

/// A number that ffprobe has as a text or a fraction; nothing for 0, which is what it does not know.
std::optional<double> ratioText(const Json& json, const char* key) {
    const std::string text = textOf(json, key);
    const double top = std::strtod(text.c_str(), nullptr);
    const std::size_t slash = text.find('/');
    const double bottom = slash == std::string::npos ? 1 : std::strtod(&text[slash + 1], nullptr);
    return top > 0 && bottom > 0 ? std::make_optional(top / bottom) : std::nullopt;
}

/// "yuv422p10le" is 4:2:2; nothing for what has no samples of colour differences.
std::string samplingOf(const std::string& pixels) {
    const bool isSampled = pixels.rfind("yuv", 0) == 0 && pixels.size() >= 6;
    return isSampled ? pixels.substr(3, 1) + ":" + pixels.substr(4, 1) + ":" + pixels.substr(5, 1)
                     : "";
}

void compareProbedPicture(Comparison& compare, const Json& theirs, const Json& ours) {
    compare.expect("width", numberAt(theirs, "width"), numberAt(ours, "width"));
    compare.expect("height", numberAt(theirs, "height"), numberAt(ours, "height"));
    compare.expect("rate", ratioText(theirs, "r_frame_rate"), ratio(ours["rate"]), millisecond);
    compare.expect("bits", ratioText(theirs, "bits_per_raw_sample"), numberAt(ours, "bits"));
    compare.expect("sampling", samplingOf(textOf(theirs, "pix_fmt")), textOf(ours, "sampling"));
    compare.expect("picture duration", ratioText(theirs, "duration"), secondsOf(ours), millisecond);
    compare.expectCodec("picture codec", textOf(theirs, "codec_name"), textOf(ours, "codec"));
}

void compareProbedSound(Comparison& compare, const Json& theirs, const Json& ours) {
    compare.expect("channels", numberAt(theirs, "channels"), numberAt(ours, "channels"));
    compare.expect("sampling rate", ratioText(theirs, "sample_rate"), ratio(ours["sampleRate"]));
    compare.expect("sound bits", numberAt(theirs, "bits_per_sample"), numberAt(ours, "bits"));
    compare.expect("sound duration", ratioText(theirs, "duration"), secondsOf(ours), millisecond);
    compare.expectCodec("sound codec", textOf(theirs, "codec_name"), textOf(ours, "codec"));
}

/// @return how many values ffprobe and we have; none of a file that it does not open.
int compareFfprobe(const Workshop& shop, const std::filesystem::path& path) {
    const std::string clip = "'" + path.string() + "'";
    const Json probed = Json::parse(
        shop.run("ffprobe -v quiet -print_format json -show_streams " + clip).out, nullptr, false);
    if (!probed.contains("streams") || probed["streams"].empty()) {
        return 0;
    }
    const Json ours = Json::parse(shop.run("corvid info --json " + clip).out)["essence"];
    int compared = 0;
    Comparison compare("ffprobe", path.filename().string(), compared);
    const auto pictures = tracksOf(probed["streams"], "codec_type", "video");
    const auto ourPictures = tracksOf(ours, "kind", "picture");
    compare.expect("picture tracks", pictures.size(), ourPictures.size());
    for (std::size_t i = 0; i != std::min(pictures.size(), ourPictures.size()); ++i) {
        compareProbedPicture(compare, pictures[i], ourPictures[i]);
    }
    const auto sounds = tracksOf(probed["streams"], "codec_type", "audio");
    const auto ourSounds = tracksOf(ours, "kind", "sound");
    compare.expect("sound tracks", sounds.size(), ourSounds.size());
    for (std::size_t i = 0; i != std::min(sounds.size(), ourSounds.size()); ++i) {
        compareProbedSound(compare, sounds[i], ourSounds[i]);
    }
    return compared;
}

struct Reader {
    const char* name;
    int (*compare)(const Workshop& shop, const std::filesystem::path& path);
};

void compareFolder(const Reader& reader, const std::filesystem::path& folder) {
    const Workshop shop;
    if (shop.run(std::string("command -v ") + reader.name).status != 0) {
        GTEST_SKIP() << "no " << reader.name;
    }
    if (folder.empty() || !std::filesystem::exists(folder)) {
        GTEST_SKIP() << "no folder of files";
    }
    int compared = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".mxf") {
            compared += reader.compare(shop, entry.path());
        }
    }
    ::testing::Test::RecordProperty("compared", compared);
    EXPECT_GT(compared, 0);
}

class OtherReaders : public ::testing::TestWithParam<Reader> {};

TEST_P(OtherReaders, sayTheSameOfTheSamples) { compareFolder(GetParam(), samplesDir()); }

TEST_P(OtherReaders, sayTheSameOfFilesOfFFmpeg) { compareFolder(GetParam(), CORVID_FFMPEG_FILES); }

INSTANTIATE_TEST_SUITE_P(, OtherReaders,
                         ::testing::Values(Reader{"mediainfo", compareMediainfo},
                                           Reader{"ffprobe", compareFfprobe}),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
} // namespace Corvid::Testing
