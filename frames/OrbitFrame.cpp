#include "OrbitFrame.h"

#include <vorbel/CVorbel.h>

namespace {

double storeColumns(const vorbel::OrbitFrame& frame, double m[][3]) {
    const vorbel::Vector3* const axes[] = {&frame.axis0, &frame.axis1, &frame.axis2};
    for (int j = 0; j < 3; ++j) {
        m[0][j] = axes[j]->x;
        m[1][j] = axes[j]->y;
        m[2][j] = axes[j]->z;
    }
    return frame.radius;
}

}  // namespace

double CVorbel::matr_bariz(const fVector& v, double m[][3]) const {
    return storeColumns(vorbel::velocityAlignedFrame(vorbel::position(v), vorbel::velocity(v)), m);
}

double CVorbel::matr_barizRECT(const fVector& v, double m[][3]) const {
    return storeColumns(vorbel::radiusAlignedFrame(vorbel::position(v), vorbel::velocity(v)), m);
}
