#include "Outline.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace vorbel::tool {
namespace {

/// Twice the area, positive counterclockwise; the last corner need not be the first.
double signedArea(const std::vector<Corner>& corners) {
    double sum = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Corner& a = corners[i];
        const Corner& b = corners[(i + 1) % corners.size()];
        sum += a.longitude * b.latitude - b.longitude * a.latitude;
    }
    return sum;
}

/// What of an area lies on one side of a meridian (Sutherland and Hodgman).
std::vector<Corner> clipped(const std::vector<Corner>& corners, double meridian, bool east) {
    std::vector<Corner> kept;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Corner& a = corners[i];
        const Corner& b = corners[(i + 1) % corners.size()];
        const double toA = east ? a.longitude - meridian : meridian - a.longitude;
        const double toB = east ? b.longitude - meridian : meridian - b.longitude;
        if (toA >= 0.0) {
            kept.push_back(a);
        }
        if ((toA < 0.0 && toB > 0.0) || (toA > 0.0 && toB < 0.0)) {
            kept.push_back({meridian, a.latitude + (b.latitude - a.latitude) * toA / (toA - toB)});
        }
    }
    return kept;
}

}  // namespace

std::vector<Ring> outline(std::vector<Corner> corners) {
    // each longitude on the turn of the one before it
    for (std::size_t i = 1; i < corners.size(); ++i) {
        const double before = corners[i - 1].longitude;
        corners[i].longitude = before + std::remainder(corners[i].longitude - before, 360.0);
    }
    constexpr double kHalfTurn = 180.0;
    if (std::abs(corners.back().longitude - corners.front().longitude) > kHalfTurn) {
        throw std::runtime_error("an outline goes around a pole, which no polygon of longitudes and latitudes can");
    }
    if (signedArea(corners) < 0.0) {
        std::reverse(corners.begin(), corners.end());
    }
    std::vector<Ring> rings;
    for (const double turn : {-360.0, 0.0, 360.0}) {
        Ring ring = clipped(clipped(corners, turn - kHalfTurn, true), turn + kHalfTurn, false);
        if (std::abs(signedArea(ring)) == 0.0) {
            continue;  // nothing there, or a line along the meridian
        }
        for (Corner& corner : ring) {
            corner.longitude -= turn;
        }
        ring.push_back(ring.front());
        rings.push_back(std::move(ring));
    }
    return rings;
}

}  // namespace vorbel::tool
