#ifndef VORBEL_PRODUCTS_ORBIT_FILE_H
#define VORBEL_PRODUCTS_ORBIT_FILE_H

/// \file
/// State vectors from orbit files and tables.

#include <vorbel/products/Export.h>
#include <vorbel/scene/Instant.h>
#include <vorbel/scene/Orbit.h>

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vorbel::products {

/// The state vectors of a file, in order of time.
struct OrbitFile {
    std::string source;                       ///< the name of the file, for messages
    std::string mission;                      ///< such as "S1A"; empty if the file does not say
    std::string type;                         ///< such as "AUX_POEORB" or "AUX_RESORB"; empty of a table
    std::vector<scene::StateVector> vectors;  ///< m, m/s, Earth-fixed; at least one
};

/// Reads a precise or restituted orbit file of Sentinel-1 (XML), whole or an extract of one, or a table of state
/// vectors (CSV, see docs/products.md). The number of vectors is what the file holds, whatever it says.
/// \throws std::runtime_error  a file that cannot be read, is larger than 64 MiB, is cut, is neither, is in another
///                             frame or time scale, has no vectors or holds what is not a finite number; one sentence
///                             says which
VORBEL_PRODUCTS_API OrbitFile readOrbitFile(const std::filesystem::path& file);

/// Reads the text of an orbit file or table.
/// \throws std::runtime_error  as above
VORBEL_PRODUCTS_API OrbitFile parseOrbitFile(std::string_view text, std::string_view source = "the orbit file");

/// Merges files of one satellite, in order of preference: the first gives all its vectors, each other one those that
/// lie outside what the files before it span, by half its usual spacing at least. Files of different runs differ by
/// centimetres where they overlap; so that they are not mixed, vectors never alternate between two files.
/// \throws std::invalid_argument  no file, or files of different satellites
VORBEL_PRODUCTS_API OrbitFile merged(std::span<const OrbitFile> files);

/// The vectors for an interval of time, with those of a margin on both sides as far as the file reaches.
/// \param[in] file    vectors, in order of time
/// \param[in] first   the interval begins
/// \param[in] last    and ends
/// \param[in] margin  s, not negative; four vectors on each side are what the interpolation uses best
/// \throws std::runtime_error  the file does not cover the interval, or has a hole in it of more than three times the
///                             usual spacing; one sentence says what it covers
VORBEL_PRODUCTS_API std::vector<scene::StateVector> vectorsAround(const OrbitFile& file, const scene::Instant& first,
                                                                  const scene::Instant& last, double margin = 60.0);

}  // namespace vorbel::products

#endif
