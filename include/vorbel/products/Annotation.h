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

/// Readers of radar products and orbit files.
namespace vorbel::products {

/// How the lines of an image follow each other and what its columns count.
enum class ImageKind {
    stripmap,    ///< slant range, one run of lines
    bursts,      ///< slant range, bursts of a scanning antenna (TOPS), stored one below the other, overlapping in time
    groundRange  ///< ground range, detected, one run of lines
};

/// The satellite's attitude at an instant.
struct AttitudeSample {
    scene::Instant time;  ///< UTC
    std::string frame;    ///< the inertial frame of the quaternion, such as "GM2000"
    double q0 = 0.0;      ///< quaternion between the satellite and `frame`, in the order of the file: first
    double q1 = 0.0;      ///< second
    double q2 = 0.0;      ///< third
    double q3 = 0.0;      ///< fourth
    double wx = 0.0;      ///< angular rate about x, rad/s; the norm of the three is the rate of the orbit
    double wy = 0.0;      ///< about y
    double wz = 0.0;      ///< about z
    double roll = 0.0;    ///< degrees, as the file has it
    double pitch = 0.0;   ///< degrees, as the file has it
    double yaw = 0.0;     ///< degrees, as the file has it
};

/// A Doppler centroid over the swath: polynomials of Hz over powers of (two-way range time - referenceTime) in s,
/// lowest power first.
struct DopplerCentroid {
    scene::Instant time;           ///< UTC
    double referenceTime = 0.0;    ///< s
    std::vector<double> geometry;  ///< from orbit and attitude
    std::vector<double> data;      ///< measured in the echoes
};

/// The azimuth frequency rate over the swath: Hz/s over powers of (two-way range time - referenceTime) in s.
struct FrequencyRate {
    scene::Instant time;               ///< UTC
    double referenceTime = 0.0;        ///< s
    std::vector<double> coefficients;  ///< lowest power first
};

/// One burst of an image of bursts. Its lines begin at its index times linesPerBurst.
struct Burst {
    scene::Instant time;         ///< of its first line
    scene::Instant sensingTime;  ///< when its first echo was received
    int firstValidLine = -1;     ///< of the lines of the burst that hold data; -1 if the file does not say
    int lastValidLine = -1;      ///< of the same
    int firstValidSample = -1;   ///< the smallest sample that holds data in any line; -1 if the file does not say
    int lastValidSample = -1;    ///< the greatest
};

/// A point of the product's own geolocation grid.
struct GridPoint {
    scene::Instant time;          ///< zero-Doppler, rounded to 1 us in the files
    double slantRangeTime = 0.0;  ///< s, two-way
    double line = 0.0;            ///< from 0
    double pixel = 0.0;           ///< from 0
    double latitude = 0.0;        ///< degrees, geodetic
    double longitude = 0.0;       ///< degrees
    double height = 0.0;          ///< m above the ellipsoid
    double incidenceAngle = 0.0;  ///< degrees
    double elevationAngle = 0.0;  ///< degrees
};

/// From ground range to slant range and back, near a time; m over powers of m, lowest power first.
struct GroundRange {
    scene::Instant time;                ///< UTC
    double slantOrigin = 0.0;           ///< m
    double groundOrigin = 0.0;          ///< m
    std::vector<double> slantToGround;  ///< over powers of (slant range - slantOrigin)
    std::vector<double> groundToSlant;  ///< over powers of (ground range - groundOrigin)
};

/// The roll of the antenna's beam that the processor used, and the mean height of the ground.
struct AntennaPattern {
    std::string swath;           ///< such as "IW2"
    scene::Instant time;         ///< UTC
    double roll = 0.0;           ///< degrees
    double terrainHeight = 0.0;  ///< m
};

/// How the radar sent, for each of the swaths that make the image.
struct Downlink {
    std::string swath;                      ///< such as "IW2"
    scene::Instant time;                    ///< UTC
    double pulseRepetitionFrequency = 0.0;  ///< Hz
    int rank = 0;                           ///< pulses between sending and receiving
};

/// A mean height of the ground that the processor used.
struct TerrainHeight {
    scene::Instant time;  ///< UTC
    double height = 0.0;  ///< m
};

/// The content of an annotation file. Lists may be empty where the file has none, except those that the kind of image
/// cannot do without.
struct Annotation {
    std::string source;  ///< the name of the file, for messages

    // identification
    std::string mission;                   ///< such as "S1A"
    std::string productType;               ///< such as "SLC" or "GRD"
    std::string mode;                      ///< such as "IW"
    std::string swath;                     ///< such as "IW2"; "IW" of an image of all three
    std::string polarisation;              ///< such as "VV"
    std::string pass;                      ///< "Ascending" or "Descending"
    int absoluteOrbit = 0;                 ///< counted from launch
    scene::Instant startTime;              ///< of the image
    scene::Instant stopTime;               ///< of the image
    ImageKind kind = ImageKind::stripmap;  ///< what follows from the projection and the bursts

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
    std::string orbitSource;           ///< where the processor had its orbit from
    std::string attitudeSource;        ///< and its attitude
    double ellipsoidSemiMajorAxis = std::numeric_limits<double>::quiet_NaN();  ///< m
    double ellipsoidSemiMinorAxis = std::numeric_limits<double>::quiet_NaN();  ///< m
    std::vector<Downlink> downlinks;                                           ///< one for each swath
    std::vector<AntennaPattern> antennaPatterns;                               ///< in order of time
    std::vector<TerrainHeight> terrainHeights;                                 ///< in order of time

    // geometry
    std::vector<scene::StateVector> vectors;        ///< m, m/s, Earth-fixed; in order of time
    std::vector<AttitudeSample> attitude;           ///< in order of time
    std::vector<DopplerCentroid> dopplerCentroids;  ///< in order of time
    std::vector<FrequencyRate> frequencyRates;      ///< in order of time
    std::vector<GridPoint> grid;                    ///< line by line
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
