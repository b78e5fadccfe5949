#include "Surface.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <stdexcept>

#include "Text.h"

namespace vorbel::tool {
namespace {

// Tags of GeoTIFF and of the value for "no data" that GDAL adds.
constexpr ttag_t kPixelScale = 33550;
constexpr ttag_t kTiepoint = 33922;
constexpr ttag_t kGeoKeys = 34735;
constexpr ttag_t kNoData = 42113;

void addGeoTags(TIFF* tiff) {
    static constexpr std::array<TIFFFieldInfo, 4> kFields{{
        {kPixelScale, -1, -1, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, const_cast<char*>("ModelPixelScale")},
        {kTiepoint, -1, -1, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, const_cast<char*>("ModelTiepoint")},
        {kGeoKeys, -1, -1, TIFF_SHORT, FIELD_CUSTOM, 1, 1, const_cast<char*>("GeoKeyDirectory")},
        {kNoData, -1, -1, TIFF_ASCII, FIELD_CUSTOM, 1, 0, const_cast<char*>("NoData")},
    }};
    TIFFMergeFieldInfo(tiff, kFields.data(), kFields.size());
}

/// A file being read, with what its messages begin with.
struct Tiff {
    std::string name;
    std::unique_ptr<TIFF, decltype(&TIFFClose)> file;

    [[noreturn]] void refuse(const std::string& why) const {
        throw std::runtime_error(name + " " + why);
    }

    template <class T>
    T number(ttag_t tag) const {
        T value{};
        TIFFGetFieldDefaulted(file.get(), tag, &value);
        return value;
    }

    template <class T>
    std::span<const T> list(ttag_t tag) const {
        std::uint16_t count = 0;
        const T* values = nullptr;
        return TIFFGetField(file.get(), tag, &count, &values) == 1 ? std::span<const T>(values, count)
                                                                   : std::span<const T>();
    }
};

/// The short value of a GeoKey; 0 if there is none.
int geoKey(std::span<const std::uint16_t> directory, int key) {
    constexpr std::size_t kEntry = 4;  // key, where the value is (0: here), how many, value
    for (std::size_t i = kEntry; i + kEntry <= directory.size(); i += kEntry) {
        if (directory[i] == key && directory[i + 1] == 0) {
            return directory[i + 3];
        }
    }
    return 0;
}

scene::RasterGrid gridOf(const Tiff& tiff, std::uint32_t columns, std::uint32_t rows) {
    constexpr int kRasterType = 1025;
    constexpr int kGeographicType = 2048;
    constexpr int kPixelIsPoint = 2;
    const auto keys = tiff.list<std::uint16_t>(kGeoKeys);
    const auto scale = tiff.list<double>(kPixelScale);
    const auto tie = tiff.list<double>(kTiepoint);
    const int system = geoKey(keys, kGeographicType);
    if (scale.size() < 2 || tie.size() < 6 || !(scale[0] > 0.0) || !(scale[1] > 0.0)) {
        tiff.refuse("is no GeoTIFF with north up: it lacks the scale of its cells or a tie point");
    }
    if (system != 4326 && system != 4979) {
        tiff.refuse("is not in geographic coordinates on WGS 84 (EPSG:4326), but in the system " +
                    std::to_string(system));
    }
    const double west = tie[3] - tie[0] * scale[0];
    const double north = tie[4] + tie[1] * scale[1];
    return geoKey(keys, kRasterType) == kPixelIsPoint
               ? scene::RasterGrid{north, west, scale[1], scale[0], rows, columns}
               : scene::RasterGrid::fromCorner(north, west, scale[1], scale[0], rows, columns);
}

/// One value of a file's sample format.
float sampleAt(const std::uint8_t* bytes, std::uint16_t format, std::uint16_t bits) {
    if (format == SAMPLEFORMAT_INT && bits == 16) {
        std::int16_t value = 0;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    if (bits == 64) {
        double value = 0.0;
        std::memcpy(&value, bytes, sizeof value);
        return static_cast<float>(value);
    }
    float value = 0.0F;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// Where the values of a file stand in it: in tiles; strips are tiles as wide as the image.
struct Tiles {
    bool tiled;
    std::uint32_t width, height;  // cells
    tmsize_t size;                // bytes of a whole one
};

Tiles tilesOf(const Tiff& tiff, const scene::RasterGrid& grid, std::uint16_t bits) {
    TIFF* const in = tiff.file.get();
    const auto columns = static_cast<std::uint32_t>(grid.columns);
    const auto rows = static_cast<std::uint32_t>(grid.rows);
    const Tiles tiles = TIFFIsTiled(in) != 0
                            ? Tiles{true, tiff.number<std::uint32_t>(TIFFTAG_TILEWIDTH),
                                    tiff.number<std::uint32_t>(TIFFTAG_TILELENGTH), TIFFTileSize(in)}
                            : Tiles{false, columns, std::min(rows, tiff.number<std::uint32_t>(TIFFTAG_ROWSPERSTRIP)),
                                    TIFFStripSize(in)};
    constexpr std::uint64_t kMostCells = std::uint64_t{1} << 31;
    constexpr tmsize_t kLargestTile = tmsize_t{1} << 30;
    if (tiles.width == 0 || tiles.height == 0 || tiles.size <= 0 || tiles.size > kLargestTile ||
        static_cast<std::uint64_t>(tiles.size) < std::uint64_t{tiles.width} * tiles.height * (bits / 8) ||
        std::uint64_t{rows} * columns > kMostCells) {
        tiff.refuse("has no size that makes sense, or is larger than 2^31 cells");
    }
    return tiles;
}

/// The value that stands for a missing height; not-a-number if the file names none.
float noDataOf(const Tiff& tiff) {
    const char* text = nullptr;
    return static_cast<float>(TIFFGetField(tiff.file.get(), kNoData, &text) == 1
                                  ? parseNumber(text)
                                  : std::numeric_limits<double>::quiet_NaN());
}

void readValues(const Tiff& tiff, std::uint16_t format, std::uint16_t bits, Raster& raster) {
    TIFF* const in = tiff.file.get();
    const auto columns = static_cast<std::uint32_t>(raster.grid.columns);
    const auto rows = static_cast<std::uint32_t>(raster.grid.rows);
    const Tiles tiles = tilesOf(tiff, raster.grid, bits);
    const float noData = noDataOf(tiff);
    const std::size_t bytes = bits / 8;
    raster.values.resize(std::size_t{rows} * columns);
    std::vector<std::uint8_t> tile(static_cast<std::size_t>(tiles.size));
    for (std::uint32_t row = 0; row < rows; row += tiles.height) {
        for (std::uint32_t column = 0; column < columns; column += tiles.width) {
            const tmsize_t got =
                tiles.tiled ? TIFFReadEncodedTile(in, TIFFComputeTile(in, column, row, 0, 0), tile.data(), tiles.size)
                            : TIFFReadEncodedStrip(in, TIFFComputeStrip(in, row, 0), tile.data(), tiles.size);
            const std::uint32_t filled = std::min(tiles.height, rows - row);
            if (got < static_cast<tmsize_t>(std::uint64_t{tiles.width} * filled * bytes)) {
                tiff.refuse("is damaged or cut short");
            }
            for (std::uint32_t r = 0; r < filled; ++r) {
                for (std::uint32_t c = 0; c < std::min(tiles.width, columns - column); ++c) {
                    const float value =
                        sampleAt(tile.data() + (std::size_t{r} * tiles.width + c) * bytes, format, bits);
                    raster.values[std::size_t{row + r} * columns + column + c] =
                        value == noData ? std::numeric_limits<float>::quiet_NaN() : value;
                }
            }
        }
    }
}

}  // namespace

Raster readGeoTiff(const std::filesystem::path& file) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    TIFFSetTagExtender(addGeoTags);
    const Tiff tiff{file.string(), {TIFFOpen(file.string().c_str(), "r"), &TIFFClose}};
    if (!tiff.file) {
        tiff.refuse("cannot be read as a GeoTIFF");
    }
    const auto columns = tiff.number<std::uint32_t>(TIFFTAG_IMAGEWIDTH);
    const auto rows = tiff.number<std::uint32_t>(TIFFTAG_IMAGELENGTH);
    const auto bits = tiff.number<std::uint16_t>(TIFFTAG_BITSPERSAMPLE);
    const auto format = tiff.number<std::uint16_t>(TIFFTAG_SAMPLEFORMAT);
    if (tiff.number<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL) != 1 ||
        !((format == SAMPLEFORMAT_INT && bits == 16) ||
          (format == SAMPLEFORMAT_IEEEFP && (bits == 32 || bits == 64)))) {
        tiff.refuse("does not hold one height for each cell, as 16-bit integers or as floating-point numbers");
    }
    Raster raster;
    raster.grid = gridOf(tiff, columns, rows);
    readValues(tiff, format, bits, raster);
    return raster;
}

Surface readTerrain(const std::filesystem::path& terrain, const std::filesystem::path& geoid) {
    Surface surface;
    surface.raster = readGeoTiff(terrain);
    const scene::RasterGrid& grid = surface.raster.grid;
    std::vector<float>& values = surface.raster.values;
    const auto made = [](const Raster& raster, const std::filesystem::path& file) {
        try {
            return scene::Terrain(raster.values, raster.grid);
        } catch (const std::invalid_argument& error) {
            throw std::runtime_error(file.string() + ": " + error.what());
        }
    };
    if (!geoid.empty()) {
        const Raster undulations = readGeoTiff(geoid);
        const scene::Terrain heights = made(undulations, geoid);
        std::vector<double> latitude(grid.columns);
        std::vector<double> longitude(grid.columns);
        std::vector<double> undulation(grid.columns);
        std::size_t outside = 0;
        for (std::size_t row = 0; row < grid.rows; ++row) {
            for (std::size_t column = 0; column < grid.columns; ++column) {
                latitude[column] = grid.north - static_cast<double>(row) * grid.latitudeStep;
                longitude[column] = grid.west + static_cast<double>(column) * grid.longitudeStep;
            }
            heights.heights(latitude, longitude, undulation);
            for (std::size_t column = 0; column < grid.columns; ++column) {
                float& value = values[row * grid.columns + column];
                outside += std::isnan(undulation[column]) && !std::isnan(value) ? 1 : 0;
                value = static_cast<float>(value + undulation[column]);
            }
        }
        if (outside > 0) {
            throw std::runtime_error(geoid.string() + " does not cover " + terrain.string() + ": " +
                                     std::to_string(outside) + " heights lie outside it");
        }
    }
    surface.terrain.emplace(made(surface.raster, terrain));
    return surface;
}

}  // namespace vorbel::tool
