// The Doppler centroid from orbit and attitude, beside the product's own.

#include "Doppler.h"

#include "Commands.h"
#include "InertialFrame.h"
#include "Text.h"

#include <vorbel/scene/PixelToGround.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <stdexcept>
#include <string>

namespace vorbel::tool {
namespace {

constexpr double kDegreesPerRadian = 57.295779513082320877;
constexpr double kEarthRate = 7.29211515e-5;  // rad/s
constexpr double kSpeedOfLight = 299792458.0;

Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Vector& a, const Vector& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

Vector unit(const Vector& a) {
    const double length = std::sqrt(dot(a, a));
    return {a[0] / length, a[1] / length, a[2] / length};
}

/// The direction of flight of the body, its -y axis, in the frame of the quaternions at a time; these are interpolated
/// linearly in between.
Vector flightAxis(const std::vector<products::AttitudeSample>& list, const scene::Instant& time) {
    auto after = std::upper_bound(list.begin() + 1, list.end() - 1, time,
                                  [](const scene::Instant& t, const auto& sample) { return t < sample.time; });
    const products::AttitudeSample& b = *after;
    const products::AttitudeSample& a = *std::prev(after);
    const double share = time.since(a.time) / b.time.since(a.time);
    // a quaternion and its negative are the same attitude
    const double sign = a.q0 * b.q0 + a.q1 * b.q1 + a.q2 * b.q2 + a.q3 * b.q3 < 0.0 ? -1.0 : 1.0;
    const auto mixed = [&](double qa, double qb) { return (1.0 - share) * qa + share * sign * qb; };
    const double x = mixed(a.q0, b.q0);
    const double y = mixed(a.q1, b.q1);
    const double z = mixed(a.q2, b.q2);
    const double w = mixed(a.q3, b.q3);  // the scalar part stands last
    return unit({-2.0 * (x * y - z * w), -(w * w - x * x + y * y - z * z), -2.0 * (y * z + x * w)});
}

double horner(const std::vector<double>& coefficients, double x) {
    double sum = 0.0;
    for (std::size_t i = coefficients.size(); i-- > 0;) {
        sum = sum * x + coefficients[i];
    }
    return sum;
}

/// Pitch and yaw (degrees) that turn the forward axis of the radius-aligned frame into a direction.
struct Angles {
    double pitch;
    double yaw;
};
Angles anglesOf(const Vector& direction, const scene::State& s) {
    const Vector position{s.x, s.y, s.z};
    const Vector velocity{s.vx - kEarthRate * s.y, s.vy + kEarthRate * s.x, s.vz};  // relative to non-rotating axes
    const Vector up = unit(position);
    const Vector left = unit(cross(position, velocity));
    const Vector forward = cross(left, up);
    return {std::asin(-dot(direction, up)) * kDegreesPerRadian,
            std::atan2(dot(direction, left), dot(direction, forward)) * kDegreesPerRadian};
}

}  // namespace

std::vector<CentroidComparison> compareCentroids(const products::Product& product, double height, double ut1MinusUtc) {
    const products::Annotation& a = product.annotation;
    const auto& attitude = a.attitude;
    constexpr std::size_t kEnough = 2;
    if (a.attitude.size() < kEnough || a.dopplerCentroids.empty()) {
        throw std::runtime_error(a.source + " has no list of attitudes or of Doppler centroids");
    }
    if (a.attitude.front().frame != "GM2000") {
        throw std::runtime_error(a.source + " has its attitude in the frame '" + a.attitude.front().frame +
                                 "', not in GM2000");
    }
    std::vector<CentroidComparison> rows;
    const double middleLine = (a.lines - 1) / 2.0;
    for (const products::DopplerCentroid& d : a.dopplerCentroids) {
        if (d.time < attitude.front().time || attitude.back().time < d.time) {
            continue;
        }
        const double time = d.time.since(product.mapping.epoch());
        const Vector axis = flightAxis(attitude, d.time);
        const Matrix turn = earthFixedFromJ2000(d.time, ut1MinusUtc);
        const Angles angles =
            anglesOf({dot(turn[0], axis), dot(turn[1], axis), dot(turn[2], axis)}, product.orbit.at(time));
        for (const double pixel : {0.0, (a.samples - 1) / 2.0, a.samples - 1.0}) {
            const double range = product.mapping.toRadar({middleLine, pixel}).slantRange;
            double rangeRate = 0.0;
            scene::Status status = scene::Status::ok;
            scene::GroundPoints out;
            out.rangeRate = std::span(&rangeRate, 1);
            out.status = std::span(&status, 1);
            scene::Pixels pixels{std::span(&time, 1), std::span(&range, 1)};
            pixels.height = std::span(&height, 1);
            scene::beamToGround(product.orbit, product.side, {1, 1}, pixels,
                                {std::span(&angles.pitch, 1), std::span(&angles.yaw, 1)}, out);
            if (scene::located(status)) {
                const double since = range / (kSpeedOfLight / 2.0) - d.referenceTime;
                rows.push_back({d.time, range, -2.0 / products::wavelength(a) * rangeRate, horner(d.geometry, since),
                                horner(d.data, since)});
            }
        }
    }
    return rows;
}

void doppler(const products::Product& product, double height, std::optional<double> ut1MinusUtc, Form form) {
    const products::Annotation& a = product.annotation;
    const double ut1 = ut1MinusUtc.value_or(tool::ut1MinusUtc(a.startTime));
    const std::vector<CentroidComparison> rows = compareCentroids(product, height, ut1);
    if (!ut1MinusUtc && !hasUt1(a.startTime)) {
        std::fprintf(stderr, "vorbel: UT1 - UTC of %s is not known here; give --ut1-utc, or take %.4f s\n",
                     a.startTime.text(0).c_str(), ut1);
    }
    if (rows.empty()) {
        throw std::runtime_error(a.source + " has no Doppler centroid at a time of its attitudes");
    }
    double worst = 0.0;
    double squares = 0.0;
    for (const CentroidComparison& row : rows) {
        const double difference = row.computed - row.geometry;
        worst = std::max(worst, std::abs(difference));
        squares += difference * difference;
    }
    const double rms = std::sqrt(squares / static_cast<double>(rows.size()));
    if (form == Form::json) {
        nlohmann::ordered_json json;
        json["file"] = a.source;
        json["ut1_minus_utc_s"] = ut1;
        json["worst_hz"] = worst;
        json["rms_hz"] = rms;
        json["rows"] = nlohmann::ordered_json::array();
        for (const CentroidComparison& row : rows) {
            json["rows"].push_back({{"time", row.time.text()},
                                    {"slant_range_m", row.slantRange},
                                    {"computed_hz", row.computed},
                                    {"product_geometry_hz", row.geometry},
                                    {"product_data_hz", row.data}});
        }
        std::printf("%s\n", json.dump(2).c_str());
        return;
    }
    std::printf("time,slant_range,computed,product_geometry,difference,product_data\n");
    for (const CentroidComparison& row : rows) {
        std::printf("%s,%s,%s,%s,%s,%s\n", row.time.text().c_str(), fixed(row.slantRange, kLengthDecimals).c_str(),
                    fixed(row.computed, kDopplerDecimals).c_str(), fixed(row.geometry, kDopplerDecimals).c_str(),
                    fixed(row.computed - row.geometry, kDopplerDecimals).c_str(),
                    fixed(row.data, kDopplerDecimals).c_str());
    }
    std::fprintf(stderr,
                 "%zu centroids, difference to the product's from orbit and attitude: worst %.4f Hz, rms %.4f Hz\n",
                 rows.size(), worst, rms);
}

}  // namespace vorbel::tool
