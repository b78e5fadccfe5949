#ifndef VORBEL_TESTS_SCENE_SCENE_ORBITS_H
#define VORBEL_TESTS_SCENE_SCENE_ORBITS_H

#include <vorbel/scene/Orbit.h>

#include <cmath>
#include <vector>

constexpr double kPi = 3.141592653589793;

/// State vectors of a circular orbit, Earth-fixed, every so many seconds from `first` on.
/// Time 0 is 2022 April 14, 10 h.
/// \param[in] radius       m
/// \param[in] inclination  rad
/// \param[in] argument     of latitude at time 0, rad
/// \param[in] node         longitude of the ascending node at time 0, rad
inline std::vector<vorbel::scene::StateVector> circularVectors(double radius, double inclination, double argument,
                                                               double node, double first, double step, int count) {
    const double motion = std::sqrt(3.986004418e14 / radius / radius / radius);
    const double turning = 7.292115e-5;
    std::vector<vorbel::scene::StateVector> vectors;
    for (int i = 0; i < count; ++i) {
        const double t = first + step * i;
        const double u = argument + motion * t;
        const double w = node - turning * t;
        const double c = std::cos(w);
        const double s = std::sin(w);
        const double along = radius * std::cos(u);
        const double across = radius * std::sin(u) * std::cos(inclination);
        const double alongRate = -radius * motion * std::sin(u);
        const double acrossRate = radius * motion * std::cos(u) * std::cos(inclination);
        vorbel::scene::State state;
        state.x = c * along - s * across;
        state.y = s * along + c * across;
        state.z = radius * std::sin(u) * std::sin(inclination);
        state.vx = c * alongRate - s * acrossRate + turning * state.y;
        state.vy = s * alongRate + c * acrossRate - turning * state.x;
        state.vz = radius * motion * std::cos(u) * std::sin(inclination);
        vectors.push_back({vorbel::scene::Instant::of(2022, 4, 14, 10).later(t), state});
    }
    return vectors;
}

/// The orbit through 16 such vectors, 10 s apart, from 50 s before time 0.
inline vorbel::scene::Orbit circularOrbit(double radius, double inclination, double argument, double node = 0.3) {
    return vorbel::scene::Orbit::fromVectors(circularVectors(radius, inclination, argument, node, -50.0, 10.0, 16),
                                             vorbel::scene::Instant::of(2022, 4, 14, 10));
}

#endif
