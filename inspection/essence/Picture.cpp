#include "inspection/essence/Picture.h"

#include "host/metadata/Names.h"
#include "inspection/SetValues.h"
#include "inspection/essence/Describe.h"
#include "inspection/essence/EssenceProperties.h"
#include "inspection/essence/LabelName.h"

#include <algorithm>

namespace Corvid::Inspection {

namespace {

using Metadata::MetadataSet;
using Layout = Picture::Layout;

/// The layouts whose heights and vertical offsets are those of one field or segment out of two.
bool countsHalf(const std::optional<Layout>& layout) {
    return layout == Layout::separateFields || layout == Layout::segmentedFrame;
}

bool isInterlaced(const std::optional<Layout>& layout) {
    constexpr Layout interlaced[] = {Layout::separateFields, Layout::mixedFields};
    return layout &&
           std::find(std::begin(interlaced), std::end(interlaced), *layout) != std::end(interlaced);
}

std::optional<Layout> layoutOf(const MetadataSet& set) {
    const auto value = number(set, Structural::frameLayout);
    return value && *value <= static_cast<Types::u8>(Layout::segmentedFrame)
               ? std::make_optional(static_cast<Layout>(*value))
               : std::nullopt;
}

template <class Number> auto times(const std::optional<Number>& value, Types::int64 factor) {
    using Wide = std::conditional_t<std::is_signed_v<Number>, Types::int64, Types::u64>;
    return value ? std::make_optional(static_cast<Wide>(*value) * static_cast<Wide>(factor))
                 : std::optional<Wide>();
}

std::optional<Picture::Area> area(std::optional<Types::u32> width, std::optional<Types::u32> height,
                                  std::optional<int> x, std::optional<int> y, bool isHalf) {
    if (!width && !height) {
        return std::nullopt;
    }
    const Types::int64 factor = isHalf ? 2 : 1;
    return Picture::Area{width, times(height, factor), x, times(y, factor)};
}

unsigned bitsOf(Types::u32 greatest) {
    unsigned bits = 0;
    for (; greatest != 0; greatest >>= 1) {
        ++bits;
    }
    return bits;
}

/// A letter of a pixel layout that names a component with samples of the picture: not one that is
/// transparency or fill.
bool isOfThePicture(const Types::RGBALayout::RGBAComponent& component) {
    return component.code != 0 && component.code != 'A' && component.code != 'a' &&
           component.code != 'F';
}

constexpr Types::u8 halfFloat = 253;

std::optional<Picture::Depth> layoutDepth(const Types::RGBALayout& layout) {
    for (Types::u32 i = 0; i != Types::RGBALayout::places; ++i) {
        const auto component = layout.get(i);
        if (isOfThePicture(component) && component.depth != 0) {
            const bool isHalf = component.depth == halfFloat;
            return Picture::Depth{isHalf ? 16U : component.depth, "PixelLayout", isHalf};
        }
    }
    return std::nullopt;
}

/// The letters of a pixel layout but for fill; in the usual order where they are those of RGB.
std::string componentsOf(const Types::RGBALayout& layout) {
    std::string letters;
    for (Types::u32 i = 0; i != Types::RGBALayout::places; ++i) {
        const char letter = static_cast<char>(layout.get(i).code);
        if (letter > ' ' && letter <= '~' && letter != 'F') {
            letters += letter;
        }
    }
    const std::string usual = letters.size() == 4 ? "RGBA" : "RGB";
    return std::is_permutation(letters.begin(), letters.end(), usual.begin(), usual.end())
               ? usual
               : letters;
}

/// What says how many bits a component has: that of the coding first.
std::vector<Picture::Depth> depthsOf(const MetadataSet& set,
                                     const std::vector<const MetadataSet*>& subDescriptors) {
    std::vector<Picture::Depth> depths;
    for (const MetadataSet* sub : subDescriptors) {
        const auto sizes = items(*sub, Structural::pictureComponentSizing);
        if (!sizes.empty()) {
            depths.push_back({(sizes.front().sSizi() & 0x7FU) + 1, "PictureComponentSizing"});
            break;
        }
    }
    if (const auto* layout = find(set, Structural::pixelLayout)) {
        if (const auto depth = layoutDepth(*layout)) {
            depths.push_back(*depth);
        }
    }
    if (const auto depth = number(set, Structural::componentDepth); depth && *depth != 0) {
        depths.push_back({*depth, "ComponentDepth"});
    }
    if (const auto greatest = number(set, Structural::componentMaxRef);
        greatest && *greatest != 0) {
        depths.push_back({bitsOf(*greatest), "ComponentMaxRef"});
    }
    return depths;
}

std::string samplingOf(const MetadataSet& set) {
    const auto across = number(set, Structural::horizontalSubsampling);
    const auto down = number(set, Structural::verticalSubsampling).value_or(1);
    if (!across) {
        return "";
    }
    struct Known {
        Types::u32 across, down;
        const char* name;
    };
    constexpr Known known[] = {{2, 1, "4:2:2"}, {2, 2, "4:2:0"}, {1, 1, "4:4:4"}, {4, 1, "4:1:1"}};
    for (const Known& each : known) {
        if (each.across == *across && each.down == down) {
            return each.name;
        }
    }
    return "subsampled " + std::to_string(*across) + "/" + std::to_string(down);
}

std::string nameOf(const MetadataSet& set,
                   const Structural::Property<Types::UniversalLabel>& property) {
    const auto* const label = find(set, property);
    return label == nullptr ? "" : labelName(*label);
}

Picture::Mastering::Point point(const Types::u8* bytes) {
    return {static_cast<unsigned>(bytes[0] << 8 | bytes[1]),
            static_cast<unsigned>(bytes[2] << 8 | bytes[3])};
}

std::optional<Picture::Mastering> masteringOf(const MetadataSet& set) {
    constexpr std::size_t pointSize = 4;
    Picture::Mastering mastering;
    const auto* const primaries = find(set, Structural::masteringDisplayPrimaries);
    if (primaries != nullptr && primaries->byteCount() == 3 * pointSize) {
        for (std::size_t i = 0; i != 3; ++i) {
            mastering.primaries.push_back(point(primaries->rawBuffer() + i * pointSize));
        }
    }
    const auto* const white = find(set, Structural::masteringDisplayWhitePointChromaticity);
    if (white != nullptr && white->byteCount() == pointSize) {
        mastering.white = point(white->rawBuffer());
    }
    mastering.brightest = number(set, Structural::masteringDisplayMaximumLuminance);
    mastering.darkest = number(set, Structural::masteringDisplayMinimumLuminance);
    const bool isThere =
        !mastering.primaries.empty() || mastering.white || mastering.brightest || mastering.darkest;
    return isThere ? std::make_optional(mastering) : std::nullopt;
}

/// Leaves the depths that differ from the first, and says so.
void compareDepths(const MetadataSet& set, Picture& picture, Contradictions& contradictions) {
    auto& depths = picture.depths;
    if (depths.empty()) {
        return;
    }
    depths.erase(std::remove_if(depths.begin() + 1, depths.end(),
                                [&](const auto& each) { return each.bits == depths[0].bits; }),
                 depths.end());
    for (std::size_t i = 1; i < depths.size(); ++i) {
        contradictions.push_back({className(set), depths[i].property,
                                  depths[0].property + " says " + std::to_string(depths[0].bits) +
                                      " bits, " + depths[i].property + " says " +
                                      std::to_string(depths[i].bits)});
    }
}

/// Compares the layout with how an MPEG coding scans.
void compareScanning(const MetadataSet& set, const Picture& picture,
                     Contradictions& contradictions) {
    constexpr Types::u8 progressive = 1;
    constexpr Types::u8 interlaced = 2;
    const auto scanning = number(set, Structural::codedContentScanning);
    if (scanning == interlaced && picture.layout == Layout::fullFrame) {
        contradictions.push_back({className(set), "CodedContentScanning",
                                  "FrameLayout says progressive, CodedContentScanning says "
                                  "interlaced"});
    } else if (scanning == progressive && isInterlaced(picture.layout)) {
        contradictions.push_back({className(set), "CodedContentScanning",
                                  "FrameLayout says interlaced, CodedContentScanning says "
                                  "progressive"});
    }
}

} // namespace

Picture::Area Picture::size() const {
    Area size;
    for (const auto* each : {&display, &sampled, &stored}) {
        if (*each && !size.width) {
            size.width = (*each)->width;
        }
        if (*each && !size.height) {
            size.height = (*each)->height;
        }
    }
    return size;
}

Picture describePicture(const MetadataSet& set,
                        const std::vector<const MetadataSet*>& subDescriptors,
                        Contradictions& contradictions) {
    using namespace Structural;
    Picture picture;
    picture.layout = layoutOf(set);
    const bool isHalf = countsHalf(picture.layout);
    picture.stored = area(number(set, storedWidth), number(set, storedHeight), {}, {}, isHalf);
    picture.sampled = area(number(set, sampledWidth), number(set, sampledHeight),
                           number(set, sampledXOffset), number(set, sampledYOffset), isHalf);
    picture.display = area(number(set, displayWidth), number(set, displayHeight),
                           number(set, displayXOffset), number(set, displayYOffset), isHalf);
    const auto rational = [&](const auto& property) {
        const auto* const value = find(set, property);
        return value == nullptr ? std::nullopt : std::make_optional(*value);
    };
    picture.aspectRatio = rational(imageAspectRatio);
    picture.rate = rational(sampleRate);
    const auto field = number(set, fieldDominance).value_or(0);
    if (field == 1 || field == 2) {
        picture.firstField = field;
    }
    picture.depths = depthsOf(set, subDescriptors);
    picture.sampling = samplingOf(set);
    if (const auto* layout = find(set, pixelLayout)) {
        picture.components = componentsOf(*layout);
    }
    picture.colour = {nameOf(set, colorPrimaries), nameOf(set, transferCharacteristic),
                      nameOf(set, codingEquations)};
    const bool isCdci = number(set, blackRefLevel).has_value();
    picture.black = number(set, isCdci ? blackRefLevel : componentMinRef);
    picture.white = number(set, isCdci ? whiteRefLevel : componentMaxRef);
    if (const auto format = number(set, activeFormatDescriptor)) {
        picture.activeFormat = *format >> 3 & 0x0FU; // beside it an aspect ratio and spare bits
    }
    picture.mastering = masteringOf(set);
    picture.maxCLL = number(set, maxCLL);
    picture.maxFALL = number(set, maxFALL);
    compareDepths(set, picture, contradictions);
    compareScanning(set, picture, contradictions);
    return picture;
}

const char* nameOf(Picture::Layout layout) {
    constexpr const char* names[] = {"progressive", "interlaced", "single field", "interlaced",
                                     "segmented frame"};
    return names[static_cast<std::size_t>(layout)];
}

} // namespace Corvid::Inspection
