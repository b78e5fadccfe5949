#include "AllocationCount.h"

#include <vorbel/CVorbel.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

template <class F>
long allocationsOf(F work) {
    const long before = allocationCount();
    work();
    return allocationCount() - before;
}

/// Calls every operation, on a scene at a real date.
void wholeScene() {
    fVector start;
    start.x = 7071.0;
    start.vy = 1.0;
    start.vz = 7.4;
    start.date = 44664.0;
    start.time = 44663.0 * 86400.0 + 37337.0;
    start.drag = 1e-8;

    CVorbel object;
    object.SetEllipsoid(6378.2, 6356.8);
    double a = 0.0;
    double b = 0.0;
    object.GetEllipsoid(&a, &b);
    object.SetSystem(object.GetSystem());
    object.setStep(object.getStep() + 10.0);
    object.SetProgParam(&start, 10.0, 0);
    object.prog(600.0);
    fVector state = object.runceK(object.getVector(), 10.0);
    object.adams(state, 10.0);
    object.setVector(state);
    object.GetfVector(0)->drag = 0.0;
    object.InitLagrange(&start, 100.0, 5.0, 1);
    object.InitLagrange(&start, 100.0, 0);
    CVorbel other(object);
    other = object;
    other = CVorbel(object);

    double time = start.time + 30.0;
    fVectorSimple simple;
    for (int order = 0; order <= 8; ++order) {
        object.GetFunLagrangeOpt(order)(other, state, time);
        state = object.Lagrange(&time, order);
        object.Lagrange(state, &time, order);
        CVorbel::s_Lagrange_m_Fv_t(object, simple, 30.0, order);
    }
    CVorbel::s_Lagrange4(object, simple, time);
    CVorbel::s_Lagrange4_m_Fv_t(object, simple, 30.0);
    Geopoint point = object.GeoLocation(time, 860.0, -1, 0.001, 0.02, 0.0);
    CVorbel::s_dLagrange4_rFv_t(object, point, 30.0);

    object.StarTime(start.date);
    state = object.ABS_Grnv(object.Grnv_ABS(start));
    state = object.ABS_Grnv(state, 10.0);
    state = object.ABS_GrnvR_t(state, 10.0, start.time);
    Ephemeris_Struct ephemeris;
    ephemeris.state = start;
    Elements_Struct elements;
    object.Ephemeris_to_Elements(&ephemeris, &elements);
    object.Elements_to_Ephemeris(&ephemeris, &elements);
    object.Grinvich_to_ABS(&ephemeris, &ephemeris);
    object.ABS_to_Grinvich(&ephemeris, &ephemeris);
    double matrix[3][3];
    object.matr_bariz(start, matrix);
    object.matr_barizRECT(start, matrix);

    for (int k = 0; k < 100; ++k) {
        time = start.time + k;
        point = object.GeoLocation(time, 860.0, -1, 0.001, 0.02, 0.0);
        point = object.GeoProssess(time, 860.0, 0.1, -1);
        object.centroid(time, 860.0, 0.001, 0.02, 0.0, -1);
        object.centroid_NEW(time, 860.0, 0.001, 0.02, 0.0, -1);
        double range = 0.0;
        object.radial_speed(time, point.lat, point.lon, point.h, &range);
        double pitch = 0.0;
        double yaw = 0.0;
        double roll = 0.0;
        object.attitude(time, &pitch, &yaw, &roll);
        object.PitchYaw(time, 860.0, 0.0, 900.0, 0.0, &pitch, &yaw, -1);
    }
}

}  // namespace

TEST(Allocation, TheCountSeesAllocations) {
    EXPECT_GT(allocationsOf([] { ::operator delete(::operator new(16)); }), 0);
    if (countsMalloc()) {
        EXPECT_EQ(allocationsOf([] {
                      void* volatile memory = std::malloc(16);
                      std::free(memory);
                  }),
                  1);
    }
}

TEST(Allocation, NoOperationAllocates) {
    EXPECT_EQ(allocationsOf(wholeScene), 0);
}
