#ifndef VORBEL_PRODUCTS_PIXEL_MAPPING_H
#define VORBEL_PRODUCTS_PIXEL_MAPPING_H

/// \file
/// When and at which range the radar saw a pixel, and back.

#include <vorbel/products/Annotation.h>
#include <vorbel/products/Export.h>
#include <vorbel/scene/Instant.h>

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <span>

namespace vorbel::products {

/// What the time of a line means.
///
/// The processor places the echoes of a line as if they all had travelled as long as one in the middle of the swath
/// (of the middle swath, of a scanned image). The zero-Doppler time of a pixel is therefore the line's own time plus
/// half of what its two-way range time has over that reference.
enum class Bistatic {
    corrected,   ///< times of pixels are zero-Doppler times, as those of the product's geolocation grid
    uncorrected  ///< times of pixels are those of their lines; up to 0.3 ms off, or 2 m along the track
};

/// A place in an image. Pixel centres are whole numbers, counted from 0.
struct ImagePosition {
    double line = std::numeric_limits<double>::quiet_NaN();   ///< from 0
    double pixel = std::numeric_limits<double>::quiet_NaN();  ///< from 0
};

/// Where the radar sees a pixel.
struct RadarPosition {
    double time = std::numeric_limits<double>::quiet_NaN();        ///< s since the epoch of the mapping, zero-Doppler
    double slantRange = std::numeric_limits<double>::quiet_NaN();  ///< m, one way
};

/// Where a radar position lies in an image: nowhere, or, where bursts overlap, in two of them.
struct ImagePositions {
    int count = 0;                      ///< 0, 1 or 2
    std::array<ImagePosition, 2> at{};  ///< the first is the one farther from the ends of its burst
};

/// The mapping between (line, pixel) and (time, slant range) of a product. Immutable; copies share their content, and
/// any number of threads may use one.
///
/// The image is [-0.5, lines - 0.5] by [-0.5, samples - 0.5]; outside it, and for what is not finite, not-a-number
/// comes back, or no position. Lines belong to the burst in whose rows they are stored. A ground range image uses, for
/// each line, the polynomial whose time is nearest to the line's, and nothing between two, as the product's own grid
/// does.
class VORBEL_PRODUCTS_API PixelMapping {
public:
    /// \throws std::runtime_error  the reference of the bistatic correction cannot be told, or timing that contradicts
    ///                             itself; one sentence says which
    explicit PixelMapping(const Annotation& annotation, Bistatic bistatic = Bistatic::corrected);

    /// The time of the image's first line, from which times count.
    const scene::Instant& epoch() const noexcept;

    /// Two-way range time in s at which a pixel has its line's own time; not-a-number if no correction is made.
    ///
    /// It is the median over the geolocation grid, or without a grid the middle of the swath, if that is the middle
    /// one.
    double bistaticReference() const noexcept;

    /// Zero-Doppler time and slant range of a pixel.
    RadarPosition toRadar(const ImagePosition& position) const noexcept;

    /// The places of a time (s since the epoch) and slant range (m).
    ImagePositions toImage(const RadarPosition& position) const noexcept;

    /// toRadar() of many: all four have the same length.
    /// \throws std::invalid_argument  arrays of different lengths; nothing has been written then
    void toRadar(std::span<const double> line, std::span<const double> pixel, std::span<double> time,
                 std::span<double> slantRange) const;

    /// toImage() of many: all have the same length, but `otherLine` may be empty. `otherLine` is the line in the second
    /// burst and not-a-number where there is none; the pixel is the same in both.
    /// \throws std::invalid_argument  as above
    void toImage(std::span<const double> time, std::span<const double> slantRange, std::span<double> line,
                 std::span<double> pixel, std::span<double> otherLine = {}) const;

private:
    struct Timing;
    std::shared_ptr<const Timing> m_timing;
};

}  // namespace vorbel::products

#endif
