#ifndef VORBEL_TOOL_COMMANDS_H
#define VORBEL_TOOL_COMMANDS_H

#include "Surface.h"

#include <vorbel/products/Product.h>

#include <filesystem>
#include <limits>
#include <optional>
#include <vector>

namespace vorbel::tool {

/// Which products, and on which orbit.
struct ProductChoice {
    std::vector<std::filesystem::path> files;
    std::vector<std::filesystem::path> orbits;  ///< in order of preference; empty: the product's own vectors
    products::Bistatic bistatic = products::Bistatic::corrected;
};

/// \throws std::runtime_error  what is wrong with a file
products::Product open(const ProductChoice& choice, const std::filesystem::path& file);

/// How an answer is printed.
enum class Form { text, json };

void info(const ProductChoice& choice, Form form);

struct Pixel {
    double line;
    double pixel;
};
void locate(const products::Product& product, const Surface& surface, const Pixel& pixel, Form form);
void locateTable(const products::Product& product, const Surface& surface);

struct GroundPoint {
    double latitude;   ///< degrees
    double longitude;  ///< degrees
};
void project(const products::Product& product, const Surface& surface, const GroundPoint& point, Form form);
void projectTable(const products::Product& product, const Surface& surface);

struct Steps {
    int lines;
    int pixels;
};
void grid(const products::Product& product, const Surface& surface, const Steps& steps);

/// \param[in] height  m above the ellipsoid; nothing: those of the product's own grid
void footprint(const ProductChoice& choice, bool bursts, std::optional<double> height);

/// \param[in] ut1MinusUtc  s; nothing: what the table has
void doppler(const products::Product& product, double height, std::optional<double> ut1MinusUtc, Form form);

}  // namespace vorbel::tool

#endif
