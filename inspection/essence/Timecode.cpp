#include "inspection/essence/Timecode.h"

#include <cstdio>
#include <limits>
#include <numeric>

namespace Corvid::Inspection {

bool isRate(const Types::Rational& rate) { return rate.numerator() > 0 && rate.denominator() > 0; }

std::optional<double> seconds(Types::int64 editUnits, const std::optional<Types::Rational>& rate) {
    if (!rate || !isRate(*rate)) {
        return std::nullopt;
    }
    return static_cast<double>(editUnits) * rate->denominator() / rate->numerator();
}

std::string timecodeText(const Timecode& timecode) {
    const int rate = timecode.framesPerSecond;
    // What drops frames counts further than there are frames.
    constexpr Types::int64 greatestCount = Types::int64{1} << 62;
    if (rate <= 0 || timecode.start < 0 || timecode.start > greatestCount) {
        return std::to_string(timecode.start) + " frames";
    }
    Types::int64 frame = timecode.start;
    if (timecode.dropFrame) {
        // Every minute but each tenth skips the first numbers: 2 of 30, 4 of 60 (SMPTE ST 12-1).
        const Types::int64 skipped = (rate + 14) / 15;
        const Types::int64 minute = rate * 60 - skipped;
        const Types::int64 tenMinutes = rate * 600 - skipped * 9;
        const Types::int64 rest = frame % tenMinutes;
        frame += frame / tenMinutes * 9 * skipped;
        frame += rest < rate * 60 ? 0 : ((rest - rate * 60) / minute + 1) * skipped;
    }
    const Types::int64 second = frame / rate;
    char line[64];
    std::snprintf(line, sizeof line, "%02lld:%02lld:%02lld%c%02lld",
                  static_cast<long long>(second / 3600), static_cast<long long>(second / 60 % 60),
                  static_cast<long long>(second % 60), timecode.dropFrame ? ';' : ':',
                  static_cast<long long>(frame % rate));
    return line;
}

std::optional<Types::int64> converted(Types::int64 editUnits, const Types::Rational& from,
                                      const Types::Rational& to) {
    if (!isRate(from) || !isRate(to)) {
        return std::nullopt;
    }
    Types::int64 times = Types::int64{from.denominator()} * to.numerator();
    Types::int64 by = Types::int64{from.numerator()} * to.denominator();
    const Types::int64 common = std::gcd(times, by);
    times /= common;
    by /= common;
    // Whole multiples apart, so that no product is greater than need be.
    const bool isBelow = editUnits % by < 0;
    const Types::int64 whole = editUnits / by - (isBelow ? 1 : 0);
    const Types::int64 rest = editUnits % by + (isBelow ? by : 0); // from 0 to by - 1
    constexpr Types::int64 greatest = std::numeric_limits<Types::int64>::max();
    if (rest != 0 && times > greatest / rest) {
        return std::nullopt;
    }
    const Types::int64 part = rest * times / by; // below times
    if (whole > (greatest - part) / times || whole < -(greatest / times)) {
        return std::nullopt;
    }
    return whole * times + part;
}

std::optional<Types::Rational> frameRate(const Timecode& timecode,
                                         const std::optional<Types::Rational>& trackRate) {
    const int count = timecode.framesPerSecond;
    if (trackRate && isRate(*trackRate)) {
        const auto n = Types::int64{trackRate->numerator()};
        const auto d = Types::int64{trackRate->denominator()};
        if ((2 * n + d) / (2 * d) == count) {
            return trackRate;
        }
    }
    if (count <= 0) {
        return std::nullopt;
    }
    if (timecode.dropFrame && count <= std::numeric_limits<int>::max() / 1000) {
        return Types::Rational(count * 1000, 1001);
    }
    return count % 25 == 0 ? std::make_optional<Types::Rational>(count, 1) : std::nullopt;
}

} // namespace Corvid::Inspection
