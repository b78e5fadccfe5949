#ifndef VORBEL_PRODUCTS_ANNOTATION_H
#define VORBEL_PRODUCTS_ANNOTATION_H

/// \file
/// What the annotation file of a Sentinel-1 product says of its geometry.

#include <vorbel/products/Export.h>
#include <vorbel/scene/Instant.h>
#include <vorbel/scene/Orbit.h>

#include <cstddef>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace vorbel::products {

/// How the lines of an image follow each other and what its columns count.
enum class ImageKind {
    stripmap,    ///< slant range, one run of lines
    bursts,      ///< slant range, bursts of a scanning antenna (TOPS), stored one below the other, overlapping in time
    groundRange  ///< ground range, detected, one run of lines
};

/// The satellite's attitude at an instant.
struct AttitudeSample {
    scene::Instant time;
    std::string frame;                      ///< the inertial frame of the quaternion, such as "GM2000"
    double q0 = 0, q1 = 0, q2 = 0, q3 = 0;  ///< rotation into `frame`; q0 is the first of the four in the file
    double wx = 0, wy = 0, wz = 0;          ///< angular rates, rad/s: their norm is the rate of the orbit
    double roll = 0, pitch = 0, yaw = 0;    ///< degrees, as the file has them
};

/// A Doppler centroid over the swath: polynomials of Hz over powers of (two-way range time - referenceTime) in s,
/// lowest power first.
struct DopplerCentroid {
    scene::Instant time;
    double referenceTime = 0.0;    ///< s
    std::vector<double> geometry;  ///< from orbit and attitude
    std::vector<double> data;      ///< measured in the echoes
};

/// The azimuth frequency rate over the swath: Hz/s over powers of (two-way range time - referenceTime) in s.
struct FrequencyRate {
    scene::Instant time;
    double referenceTime = 0.0;        ///< s
    std::vector<double> coefficients;  ///< lowest power first
};

/// One burst of an image of bursts. Its lines begin at index() * linesPerBurst.
struct Burst {
    scene::Instant time;         ///< of its first line
    scene::Instant sensingTime;  ///< when its first echo was received
    /// The lines of the burst that hold data, and the smallest and greatest sample that do in any of them; -1 if the
    /// file does not say.
    int firstValidLine = -1, lastValidLine = -1;
    int firstValidSample = -1, lastValidSample = -1;
};

/// A point of the product's own geolocation grid.
struct GridPoint {
    scene::Instant time;          ///< zero-Doppler, in this product's files rounded to 1 us
    double slantRangeTime = 0.0;  ///< s, two-way
    double line = 0.0, pixel = 0.0;
    double latitude = 0.0, longitude = 0.0;  ///< degrees, geodetic
    double height = 0.0;                     ///< m above the ellipsoid
    double incidenceAngle = 0.0;             ///< degrees
    double elevationAngle = 0.0;             ///< degrees
};

/// From ground range to slant range and back, near a time; m over powers of m, lowest power first.
struct GroundRange {
    scene::Instant time;
    double slantOrigin = 0.0;           ///< m
    double groundOrigin = 0.0;          ///< m
    std::vector<double> slantToGround;  ///< over powers of (slant range - slantOrigin)
    std::vector<double> groundToSlant;  ///< over powers of (ground range - groundOrigin)
};

/// The roll of the antenna's beam that the processor used, and the mean height of the ground.
struct AntennaPattern {
    std::string swath;
    scene::Instant time;
    double roll = 0.0;           ///< degrees
    double terrainHeight = 0.0;  ///< m
};

/// How the radar sent, for each of the swaths that make the image.
struct Downlink {
    std::string swath;
    scene::Instant time;
    double pulseRepetitionFrequency = 0.0;  ///< Hz
    int rank = 0;                           ///< pulses between sending and receiving
};

/// A mean height of the ground that the processor used.
struct TerrainHeight {
    scene::Instant time;
    double height = 0.0;  ///< m
};

/// The content of an annotation file. Lists may be empty where the file has none, except those that the kind of image
/// cannot do without.
struct Annotation {
    std::string source;  ///< the name of the file, for messages

    // identification
    std::string mission;       ///< such as "S1A"
    std::string productType;   ///< such as "SLC" or "GRD"
    std::string mode;          ///< such as "IW"
    std::string swath;         ///< such as "IW2"; "IW" of an image of all three
    std::string polarisation;  ///< such as "VV"
    std::string pass;          ///< "Ascending" or "Descending"
    int absoluteOrbit = 0;
    scene::Instant startTime, stopTime;
    ImageKind kind = ImageKind::stripmap;

    // image and range timing
    scene::Instant firstLineTime;          ///< of line 0, without the bistatic correction of its pixels
    double lineInterval = 0.0;             ///< s
    int lines = 0;                         ///< of the whole image
    int samples = 0;                       ///< of a line
    int linesPerBurst = 0;                 ///< 0 if there are no bursts
    std::vector<Burst> bursts;             ///< in order of time
    double slantRangeTime = 0.0;           ///< s, two-way, of pixel 0
    double rangeSamplingRate = 0.0;        ///< Hz
    double rangePixelSpacing = 0.0;        ///< m; of a ground range image along the ground
    std::vector<GroundRange> groundRange;  ///< in order of time

    // radar and processor
    double radarFrequency = 0.0;       ///< Hz
    double azimuthSteeringRate = 0.0;  ///< degrees per second, 0 without a scanning antenna
    bool bistaticCorrected = false;    ///< whether the processor says that it corrected the bistatic delay
    std::string topsFilterConvention;  ///< empty if the file does not say
    std::string orbitSource, attitudeSource;
    double ellipsoidSemiMajorAxis = std::numeric_limits<double>::quiet_NaN();  ///< m
    double ellipsoidSemiMinorAxis = std::numeric_limits<double>::quiet_NaN();  ///< m
    std::vector<Downlink> downlinks;
    std::vector<AntennaPattern> antennaPatterns;
    std::vector<TerrainHeight> terrainHeights;

    // geometry
    std::vector<scene::StateVector> vectors;  ///< m, m/s, Earth-fixed; in order of time
    std::vector<AttitudeSample> attitude;
    std::vector<DopplerCentroid> dopplerCentroids;
    std::vector<FrequencyRate> frequencyRates;
    std::vector<GridPoint> grid;
};

/// Wavelength of the carrier in m.
VORBEL_PRODUCTS_API double wavelength(const Annotation& annotation) noexcept;

/// Reads an annotation file.
/// \throws std::runtime_error  a file that cannot be read, is larger than 64 MiB, is cut, is no annotation file, lacks
///                             what the geometry needs or holds what is not a finite number; one sentence says which
VORBEL_PRODUCTS_API Annotation readAnnotation(const std::filesystem::path& file);

/// Reads the text of an annotation file.
/// \param[in] text    the whole text, UTF-8
/// \param[in] source  what messages call it
/// \throws std::runtime_error  as above
VORBEL_PRODUCTS_API Annotation parseAnnotation(std::string_view text, std::string_view source = "the annotation");

}  // namespace vorbel::products

#endif
