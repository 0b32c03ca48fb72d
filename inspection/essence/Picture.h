#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/types/Rational.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::Inspection {

/// What the metadata says of a picture (SMPTE ST 377-1). Nothing is guessed: a value that is not
/// there is empty.
struct Picture {
    /// A part of the picture, in samples of a whole frame: of two fields, both are counted.
    struct Area {
        std::optional<Types::u32> width;
        std::optional<Types::u64> height;
        std::optional<int> x;
        std::optional<Types::int64> y;
    };
    /// How lines make frames.
    enum class Layout : unsigned char {
        fullFrame = 0,      ///< progressive
        separateFields = 1, ///< interlaced, a field after the other
        singleField = 2,    ///< one field of each frame
        mixedFields = 3,    ///< interlaced, the lines of both fields in turn
        segmentedFrame = 4, ///< progressive, in two segments
    };
    /// How colours are coded, by the names of their labels.
    struct Colour {
        std::string primaries;
        std::string transfer;
        std::string matrix;
    };
    /// Bits of a component, and where that is said.
    struct Depth {
        unsigned bits = 0;
        std::string property;
        bool isFloat = false;
    };
    /// A display that the picture was graded on (SMPTE ST 2067-21).
    struct Mastering {
        /// A colour by its chromaticity.
        struct Point {
            unsigned x = 0; ///< in steps of 0.00002
            unsigned y = 0;
        };
        std::vector<Point> primaries; ///< red, green, blue; or empty
        std::optional<Point> white;
        std::optional<Types::u32> brightest; ///< in steps of 0.0001 cd/m2
        std::optional<Types::u32> darkest;
    };

    std::optional<Area> stored;
    std::optional<Area> sampled;
    std::optional<Area> display;
    std::optional<Types::Rational> aspectRatio;
    std::optional<Types::Rational> rate; ///< frames in a second
    std::optional<Layout> layout;
    std::optional<unsigned> firstField; ///< 1 or 2
    std::vector<Depth> depths;          ///< the first one counts; others only where they differ
    std::string sampling;               ///< "4:2:2"
    std::string components;             ///< "RGB", or "RGBA"
    Colour colour;
    std::optional<Types::u32> black; ///< code values of the reference levels
    std::optional<Types::u32> white;
    std::optional<unsigned> activeFormat; ///< the four bits of SMPTE ST 2016-1
    std::optional<Mastering> mastering;
    std::optional<Types::u16> maxCLL; ///< cd/m2
    std::optional<Types::u16> maxFALL;

    /// The area that is to be seen: display, else sampled, else stored, each number by itself.
    CORVID_INSPECTION_EXPORT Area size() const;
};

/// "progressive", "interlaced", "single field" or "segmented frame".
CORVID_INSPECTION_EXPORT const char* nameOf(Picture::Layout layout);

} // namespace Corvid::Inspection
