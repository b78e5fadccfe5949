#include "../accuracy/Measures.h"
#include "../accuracy/Reference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>

// The main figures of the published accuracy, from both sides: whoever makes the library more or less exact than it is
// said to be sees it here. script/accuracy then writes the page anew.

namespace {

using namespace accuracy;

constexpr double kMillimetre = 1e-3;
constexpr double kMicrometre = 1e-6;
constexpr double kNanometre = 1e-9;

/// Within two per cent.
void expectAbout(double found, double published) {
    EXPECT_NEAR(found, published, 0.02 * published);
}

class Accuracy : public testing::Test {
protected:
    void SetUp() override {
        if (!kExtendedPrecision) {
            GTEST_SKIP() << "long double is no wider than double here";
        }
    }
};

TEST_F(Accuracy, ReferenceAgreesWithItself) {
    EXPECT_LT(referenceError(), 1 * kNanometre);
    const Vec place = cartesianOf({-0.7L, 2.5L, 3.0L});
    const Geodetic back = geodeticOf(place);
    EXPECT_LT(norm(cartesianOf(back) - place), 1e-15L);
    EXPECT_LT(std::abs(back.latitude + 0.7L) + std::abs(back.height - 3), 1e-15L);
}

TEST_F(Accuracy, OfTheOrbitFallsWithTheStepToTheRoundingOfDoubles) {
    expectAbout(integratorError(0, 120, kRevolution).position, 1.236);
    expectAbout(integratorError(1, 120, kRevolution).position, 1.085);
    expectAbout(integratorError(0, 60, kRevolution).position, 3.65 * kMillimetre);
    expectAbout(integratorError(0, 30, kRevolution).position, 7.83 * kMicrometre);
    EXPECT_LT(integratorError(0, 10, kRevolution).position, 100 * kNanometre);
    const double quarter = kRevolution / 4;
    EXPECT_NEAR(std::log2(integratorError(1, 60, quarter).position / integratorError(1, 30, quarter).position), 8, 0.2);
    EXPECT_NEAR(std::log2(energyError(60) / energyError(30)), 9, 0.2);
}

TEST_F(Accuracy, OfReadOutsIsThatOfTheirNodes) {
    for (int order : {1, 2, 3, 4}) {
        const double gain = readOutError(30, order, 2).position / readOutError(15, order, 2).position;
        EXPECT_NEAR(std::log2(gain), order + 1, 0.05) << order;
    }
    EXPECT_NEAR(std::log2(readOutError(60, 7, 2).position / readOutError(30, 7, 2).position), 9, 0.2);
    EXPECT_LT(readOutError(10, 7, 2).position, 2 * kNanometre);
    expectAbout(readOutError(10, 7, 7).position, 561 * kNanometre);

    expectAbout(intervalError(120, 0, 4, 3).position, 216 * kMillimetre);
    expectAbout(intervalError(120, 0, 7, 7).position, 14.2 * kMicrometre);
    expectAbout(intervalError(30, 0, 4, 3).position, 211 * kMicrometre);
    EXPECT_LT(intervalError(30, 0, 7, 7).position, 5 * kNanometre);
    expectAbout(intervalError(840, 0, 7, 7).position, 32.2 * kMillimetre);
}

TEST_F(Accuracy, OfTimeIsPerfectForWholeSecondsAndDriftsOtherwise) {
    for (double step : {120.0, 15.0, 13.5}) {
        EXPECT_EQ(timeError(step, 500), 0.0) << step;
    }
    expectAbout(timeError(0.1, 500), 190.7 * kMicrometre);  // s
}

TEST_F(Accuracy, OfGroundPointsIsTheToleranceOfTheLookAngle) {
    for (Operation operation : {Operation::GeoLocation, Operation::GeoProssess}) {
        for (int system : {0, 1}) {
            double largest = 0;
            for (double range : {750.0, 800.0, 900.0, 1200.0}) {
                const double share = intersectionError(operation, system, range).largest() / (range * 1000);
                EXPECT_LT(share, 1.01e-10) << range;
                largest = std::max(largest, share);
            }
            EXPECT_GT(largest, 0.9e-10);
        }
    }
}

TEST_F(Accuracy, OfFramesIsTheirRatesDifference) {
    expectAbout(frameShift(100), 0.374 * kMillimetre);
}

TEST_F(Accuracy, OfASceneGainsFromAVectorInItsMiddle) {
    const Scene scene = exampleScene();
    const Approach before = fromBefore(scene);
    EXPECT_EQ(before.interval, 30.0);
    expectAbout(sceneError(scene, before).point.rms(), 143 * kMillimetre);
    expectAbout(sceneError(scene, fromMiddle(scene)).point.rms(), 88.0 * kMillimetre);
    expectAbout(sceneErrorFromNearest(scene).point.rms(), 60.2 * kMillimetre);
    expectAbout(propagationError(scene, 20).largest(), 39.2 * kMillimetre);

    // half a unit of today's `time` on each of the two times that are rounded
    Approach byDay = before;
    byDay.origin = TimeOrigin::SceneDay;
    const double shift = pointShift(scene, before, byDay).largest();
    EXPECT_GT(shift, 1.8 * kMillimetre);
    EXPECT_LT(shift, 3.6 * kMillimetre);
}

/// A folder of tables, gone with the object.
class Folder {
public:
    Folder()
        : m_path(std::filesystem::temp_directory_path() /
                 ("vorbel-accuracy-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(m_path);
    }
    ~Folder() {
        std::filesystem::remove_all(m_path);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string path() const {
        return m_path.string();
    }
    void write(const std::string& file, const std::string& content) const {
        std::ofstream(m_path / file) << content;
    }
    std::string complaint() const {
        try {
            readScenes(path());
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    }

private:
    std::filesystem::path m_path;
};

TEST(AccuracyTables, AreReadByColumnAndComplainedAboutInOneLine) {
    const Folder folder;
    EXPECT_NE(folder.complaint().find("holds no *_orbit.csv"), std::string::npos);
    const std::string orbitHead = "day,x_km,y_km,z_km,vx_km_s,vy_km_s,vz_km_s,seconds_of_day,more\n";
    const std::string gridHead = "day,seconds_of_day,slant_range_km,latitude_deg,longitude_deg,height_m\r\n";
    folder.write("a_orbit.csv", orbitHead + "10,0,0,7000,4,5,6,86399.5,?\n11,0,0,7000,4,5,6,0.5,?\n");
    EXPECT_NE(folder.complaint().find("a_grid.csv: cannot be read"), std::string::npos);
    folder.write("a_grid.csv", gridHead + "11,0.25,800,50,-60,1500\r\n");
    const Scene scene = readScenes(folder.path()).at(0);
    EXPECT_EQ(scene.name, "a");
    EXPECT_EQ(scene.orbit.at(1).time, 86400.5);
    EXPECT_EQ(scene.orbit.at(1).vz, 6.0);
    EXPECT_EQ(scene.grid.at(0).seconds, 86400.25);
    EXPECT_EQ(scene.grid.at(0).height, 1.5);

    folder.write("a_grid.csv", gridHead + "11,0.25,800,50,-60\n");
    EXPECT_NE(folder.complaint().find("line 2 has 5 cells"), std::string::npos);
    folder.write("a_grid.csv", gridHead + "11,0.25,800,50x,-60,1\n");
    EXPECT_NE(folder.complaint().find("'50x' in column latitude_deg"), std::string::npos);
    folder.write("a_grid.csv", gridHead + "11,0.25,800,50,-60,inf\n");
    EXPECT_NE(folder.complaint().find("'inf' in column height_m is not a finite number"), std::string::npos);
    folder.write("a_grid.csv", gridHead + "11,0.25,800,50,-60,1\n10,80000,800,50,-60,1\n");
    EXPECT_NE(folder.complaint().find("line 3: more than 600 s before or after the state vectors"), std::string::npos);
    folder.write("a_grid.csv", "day\n11\n");
    EXPECT_NE(folder.complaint().find("no column seconds_of_day"), std::string::npos);
    folder.write("a_orbit.csv", orbitHead + "10,0,0,7e6,4,5,6,86399.5,?\n");
    EXPECT_NE(folder.complaint().find("are the lengths in km?"), std::string::npos);
    EXPECT_EQ(folder.complaint().find('\n'), std::string::npos);
}

}  // namespace
