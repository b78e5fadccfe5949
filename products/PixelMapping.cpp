#include <vorbel/products/PixelMapping.h>

#include "Constants.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vorbel::products {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

double horner(const std::vector<double>& coefficients, double x) noexcept {
    double sum = 0.0;
    for (std::size_t i = coefficients.size(); i-- > 0;) {
        sum = sum * x + coefficients[i];
    }
    return sum;
}

double slope(const std::vector<double>& coefficients, double x) noexcept {
    double sum = 0.0;
    for (std::size_t i = coefficients.size(); i-- > 1;) {
        sum = sum * x + static_cast<double>(i) * coefficients[i];
    }
    return sum;
}

/// The swath in whose middle the processor has its reference: strip maps, and the middle one of three or five.
bool isMiddleSwath(const Annotation& a) {
    return a.kind == ImageKind::stripmap || a.swath == "IW2" || a.swath == "EW3";
}

/// What the median of a list is, which it reorders; the list is not empty.
double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

struct PixelMapping::Timing {
    /// From ground range to slant range, from a line time on.
    struct Polynomial {
        double from = 0.0;    // s, line time
        double origin = 0.0;  // m, ground range
        std::vector<double> groundToSlant;
    };

    scene::Instant epoch;
    double lineInterval = 0.0;
    double lines = 0.0;
    double samples = 0.0;
    double linesPerBurst = 0.0;  // all lines if there are no bursts
    std::vector<double> bursts;  // s, line times of the first lines
    double slantRangeTime = 0.0;
    double samplingRate = 0.0;
    double groundSpacing = 0.0;
    std::vector<Polynomial> polynomials;  // empty of an image in slant range
    double reference = kNone;

    /// Line time of a line within the image, without the correction.
    double timeOfLine(double line) const noexcept {
        const double burst =
            std::clamp(std::floor((line + 0.5) / linesPerBurst), 0.0, static_cast<double>(bursts.size() - 1));
        return bursts[static_cast<std::size_t>(burst)] + (line - burst * linesPerBurst) * lineInterval;
    }

    double correction(double twoWayTime) const noexcept {
        return std::isnan(reference) ? 0.0 : (twoWayTime - reference) / 2;
    }

    const Polynomial& polynomial(double lineTime) const noexcept {
        const auto next = std::upper_bound(polynomials.begin(), polynomials.end(), lineTime,
                                           [](double t, const Polynomial& p) { return t < p.from; });
        return next == polynomials.begin() ? *next : *std::prev(next);
    }

    double twoWayTime(double lineTime, double pixel) const noexcept {
        if (polynomials.empty()) {
            return slantRangeTime + pixel / samplingRate;
        }
        const Polynomial& p = polynomial(lineTime);
        return horner(p.groundToSlant, pixel * groundSpacing - p.origin) / (kSpeedOfLight / 2);
    }

    RadarPosition radar(double lineTime, double pixel) const noexcept {
        const double twoWay = twoWayTime(lineTime, pixel);
        return {lineTime + correction(twoWay), twoWay * (kSpeedOfLight / 2)};
    }

    double pixel(double lineTime, double twoWay) const noexcept {
        return polynomials.empty() ? (twoWay - slantRangeTime) * samplingRate
                                   : groundPixel(polynomial(lineTime), twoWay * (kSpeedOfLight / 2));
    }

    /// Newton's method, kept within what still brackets the solution.
    double groundPixel(const Polynomial& p, double slantRange) const noexcept {
        constexpr int kMostSteps = 60;
        constexpr double kPrecision = 1e-9;  // pixels
        double low = -0.5;
        double high = samples - 0.5;
        const auto miss = [&](double x) { return horner(p.groundToSlant, x * groundSpacing - p.origin) - slantRange; };
        if (!(miss(low) <= 0.0 && miss(high) >= 0.0)) {
            return kNone;
        }
        double x = (low + high) / 2;
        for (int step = 0; step < kMostSteps; ++step) {
            const double missed = miss(x);
            (missed < 0.0 ? low : high) = x;
            double next = x - missed / (slope(p.groundToSlant, x * groundSpacing - p.origin) * groundSpacing);
            if (!(next >= low && next <= high)) {
                next = (low + high) / 2;
            }
            const double moved = std::abs(next - x);
            x = next;
            if (moved < kPrecision) {
                break;
            }
        }
        return x;
    }

    bool insideLines(double line) const noexcept {
        return line >= -0.5 && line <= lines - 0.5;
    }

    bool insideSamples(double pixel) const noexcept {
        return pixel >= -0.5 && pixel <= samples - 0.5;
    }

    bool inside(const ImagePosition& p) const noexcept {
        return insideLines(p.line) && insideSamples(p.pixel);
    }
};

namespace {

/// A point of the product's grid beside the line time of its line, both s since the epoch.
struct GridTime {
    double lineTime;
    double gridTime;
    double twoWayTime;
};

/// The reference of the bistatic correction: the two-way time at which the grid's times are those of their lines. These
/// are rounded and, in some products, off by many times that in the last line, which a median does not feel.
double referenceFromGrid(const std::vector<GridTime>& grid, const std::string& source) {
    double mean = 0.0;
    for (const GridTime& g : grid) {
        mean += g.twoWayTime / static_cast<double>(grid.size());
    }
    std::vector<double> references;
    double covariance = 0.0;
    double variance = 0.0;
    for (const GridTime& g : grid) {
        const double delay = g.gridTime - g.lineTime;
        references.push_back(g.twoWayTime - 2 * delay);
        covariance += (g.twoWayTime - mean) * delay;
        variance += (g.twoWayTime - mean) * (g.twoWayTime - mean);
    }
    const double rate = covariance / variance;  // a half where the processor corrects, else zero
    if (std::abs(rate - 0.5) < 0.1) {
        return median(references);
    }
    if (std::abs(rate) < 0.1) {
        return kNone;
    }
    throw std::runtime_error(source + ": along a line, the times of the geolocation grid grow by " +
                             std::to_string(rate) + " of the range time, not by a half or not at all");
}

}  // namespace

PixelMapping::PixelMapping(const Annotation& a, Bistatic bistatic) {
    auto timing = std::make_shared<Timing>();
    timing->epoch = a.firstLineTime;
    timing->lineInterval = a.lineInterval;
    timing->lines = a.lines;
    timing->samples = a.samples;
    timing->linesPerBurst = a.kind == ImageKind::bursts ? a.linesPerBurst : a.lines;
    timing->slantRangeTime = a.slantRangeTime;
    timing->samplingRate = a.rangeSamplingRate;
    timing->groundSpacing = a.rangePixelSpacing;
    if (a.kind == ImageKind::bursts) {
        for (const Burst& burst : a.bursts) {
            timing->bursts.push_back(burst.time.since(timing->epoch));
        }
    } else {
        timing->bursts.push_back(0.0);
    }
    if (timing->bursts.empty() || !std::is_sorted(timing->bursts.begin(), timing->bursts.end(), std::less_equal<>())) {
        throw std::runtime_error(a.source + ": the bursts are not in order of time");
    }
    if (a.kind == ImageKind::groundRange) {
        for (const GroundRange& g : a.groundRange) {
            timing->polynomials.push_back({g.time.since(timing->epoch), g.groundOrigin, g.groundToSlant});
        }
        auto& polynomials = timing->polynomials;
        std::stable_sort(polynomials.begin(), polynomials.end(),
                         [](const auto& p, const auto& q) { return p.from < q.from; });
        // each holds from halfway after the one before it
        for (std::size_t i = polynomials.size(); i-- > 1;) {
            polynomials[i].from = (polynomials[i - 1].from + polynomials[i].from) / 2;
        }
    }
    if (bistatic == Bistatic::corrected) {
        std::vector<GridTime> grid;
        for (const GridPoint& g : a.grid) {
            if (timing->inside({g.line, g.pixel})) {
                grid.push_back({timing->timeOfLine(g.line), g.time.since(timing->epoch), g.slantRangeTime});
            }
        }
        constexpr std::size_t kEnough = 3;
        if (grid.size() >= kEnough) {
            timing->reference = referenceFromGrid(grid, a.source);
        } else if (isMiddleSwath(a)) {
            timing->reference = timing->twoWayTime(0.0, (a.samples - 1) / 2.0);
        } else {
            throw std::runtime_error(a.source +
                                     " has no geolocation grid, from which alone the bistatic correction of " +
                                     a.swath + " follows");
        }
    }
    m_timing = std::move(timing);
}

const scene::Instant& PixelMapping::epoch() const noexcept {
    return m_timing->epoch;
}

double PixelMapping::bistaticReference() const noexcept {
    return m_timing->reference;
}

RadarPosition PixelMapping::toRadar(const ImagePosition& position) const noexcept {
    const Timing& t = *m_timing;
    if (!t.inside(position)) {
        return {};
    }
    return t.radar(t.timeOfLine(position.line), position.pixel);
}

ImagePositions PixelMapping::toImage(const RadarPosition& position) const noexcept {
    const Timing& t = *m_timing;
    const double twoWay = position.slantRange / (kSpeedOfLight / 2);
    const double lineTime = position.time - t.correction(twoWay);
    ImagePositions found;
    double depths[2] = {};
    // the last burst that has begun, and the one before it
    auto burst = std::upper_bound(t.bursts.begin(), t.bursts.end(), lineTime + t.lineInterval / 2);
    while (burst != t.bursts.begin() && found.count < 2) {
        --burst;
        const double row = (lineTime - *burst) / t.lineInterval;
        if (!(row >= -0.5 && row <= t.linesPerBurst - 0.5)) {
            break;
        }
        const double line = static_cast<double>(burst - t.bursts.begin()) * t.linesPerBurst + row;
        const ImagePosition image{line, t.pixel(lineTime, twoWay)};
        if (!t.inside(image)) {
            break;
        }
        depths[found.count] = std::min(row, t.linesPerBurst - 1 - row);
        found.at[static_cast<std::size_t>(found.count)] = image;
        ++found.count;
    }
    if (found.count == 2 && depths[1] > depths[0]) {
        std::swap(found.at[0], found.at[1]);
    }
    return found;
}

void PixelMapping::toRadar(std::span<const double> line, std::span<const double> pixel, std::span<double> time,
                           std::span<double> slantRange) const {
    if (pixel.size() != line.size() || time.size() != line.size() || slantRange.size() != line.size()) {
        throw std::invalid_argument("toRadar: pixel, time and slantRange have " + std::to_string(pixel.size()) + ", " +
                                    std::to_string(time.size()) + " and " + std::to_string(slantRange.size()) +
                                    " values, not " + std::to_string(line.size()) + " as line");
    }
    const Timing& t = *m_timing;
    double lineTime = kNone;
    for (std::size_t i = 0; i < line.size(); ++i) {
        // neighbours are mostly in one line
        if (i == 0 || line[i] != line[i - 1]) {
            lineTime = t.insideLines(line[i]) ? t.timeOfLine(line[i]) : kNone;
        }
        const bool seen = !std::isnan(lineTime) && t.insideSamples(pixel[i]);
        const RadarPosition radar = seen ? t.radar(lineTime, pixel[i]) : RadarPosition{};
        time[i] = radar.time;
        slantRange[i] = radar.slantRange;
    }
}

void PixelMapping::toImage(std::span<const double> time, std::span<const double> slantRange, std::span<double> line,
                           std::span<double> pixel, std::span<double> otherLine) const {
    if (slantRange.size() != time.size() || line.size() != time.size() || pixel.size() != time.size() ||
        (!otherLine.empty() && otherLine.size() != time.size())) {
        throw std::invalid_argument("toImage: slantRange, line, pixel and otherLine have " +
                                    std::to_string(slantRange.size()) + ", " + std::to_string(line.size()) + ", " +
                                    std::to_string(pixel.size()) + " and " + std::to_string(otherLine.size()) +
                                    " values, not " + std::to_string(time.size()) + " as time");
    }
    for (std::size_t i = 0; i < time.size(); ++i) {
        const ImagePositions image = toImage({time[i], slantRange[i]});
        line[i] = image.at[0].line;
        pixel[i] = image.at[0].pixel;
        if (!otherLine.empty()) {
            otherLine[i] = image.at[1].line;
        }
    }
}

}  // namespace vorbel::products
