// What an application does with the installed library: propagate, locate a ground point, exchange the read-outs' table.

#include <vorbel/CVorbel.h>

#include <cmath>
#include <cstdio>

static void ownReadOut(CVorbel& /*obj*/, fVector& out, double /*t*/) {
    out.x = 1.0;
}

int main() {
    // A polar orbit 700 km up, over the equator at longitude 0, going north.
    fVector state;
    state.x = 7078.0;
    state.vz = 7.5;
    state.date = 45000.0;
    state.time = (state.date - 1.0) * 86400.0;

    CVorbel orbit;
    orbit.InitLagrange(&state, 60.0, 0);
    const double range = 850.0;
    const double time = state.time + 30.0;
    const Geopoint ground = orbit.GeoLocation(time, range, -1, 0.0, 0.0, 0.0);
    const fVector satellite = orbit.Lagrange(&time, 7);
    const double found = std::sqrt(std::pow(ground.x - satellite.x, 2) + std::pow(ground.y - satellite.y, 2) +
                                   std::pow(ground.z - satellite.z, 2));
    std::printf("latitude %.6f longitude %.6f height %.6f km, %.6f km away\n", ground.lat, ground.lon, ground.h, found);

    CVorbel::ms_afunLagrangeOpt[7] = ownReadOut;
    const bool tableIsShared = orbit.GetFunLagrangeOpt(7) == ownReadOut;

    const bool good = std::abs(found - range) < 1e-6 && std::abs(ground.h) < 1e-3 && ground.lon > 1.0 && tableIsShared;
    return good ? 0 : 1;
}
