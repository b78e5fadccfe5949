#include "Extracts.h"

#include <vorbel/products/OrbitFile.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace vorbel::products;
using vorbel::scene::Instant;

namespace {

/// Vectors 10 s apart from a second on, whose x says which file they are from.
OrbitFile vectorsFrom(double first, int count, double x, const std::string& name = "f") {
    OrbitFile file{name, "S1A", "AUX_RESORB", {}};
    for (int i = 0; i < count; ++i) {
        file.vectors.push_back({Instant{}.later(first + 10.0 * i), {x, 0, 0, 0, 0, 0}});
    }
    return file;
}

std::vector<double> seconds(const std::vector<vorbel::scene::StateVector>& vectors) {
    std::vector<double> list;
    list.reserve(vectors.size());
    for (const auto& v : vectors) {
        list.push_back(v.time.since(Instant{}));
    }
    return list;
}

}  // namespace

TEST(OrbitFile, HoldsTheVectorsOfTheFileAndNotItsCount) {
    const OrbitFile file = readOrbitFile(kOrbit);
    EXPECT_EQ(file.mission, "S1A");
    EXPECT_EQ(file.type, "AUX_POEORB");
    ASSERT_EQ(file.vectors.size(), 24U);
    EXPECT_EQ(file.vectors[0].time.text(), "2022-08-28T04:22:02.000000");

    // the same vectors as a table, columns in another order, one too many
    std::string table = "# Copernicus Sentinel data\r\nvz, vy,vx,quality,z,y,x,time\r\n\r\n";
    for (const auto& [time, s] : file.vectors) {
        table += std::to_string(s.vz) + "," + std::to_string(s.vy) + "," + std::to_string(s.vx) + ", good," +
                 std::to_string(s.z) + "," + std::to_string(s.y) + "," + std::to_string(s.x) + "," + time.text() + "\n";
    }
    const OrbitFile same = parseOrbitFile(table);
    ASSERT_EQ(same.vectors.size(), 24U);
    for (std::size_t i = 0; i < 24; ++i) {
        const auto& [time, s] = file.vectors[i];
        const auto& [otherTime, o] = same.vectors[i];
        EXPECT_EQ(time, otherTime);
        EXPECT_EQ((std::vector{s.x, s.y, s.z, s.vx, s.vy, s.vz}), (std::vector{o.x, o.y, o.z, o.vx, o.vy, o.vz}));
    }
}

TEST(OrbitFile, RefusesInOneSentenceThatNamesTheFault) {
    const std::string good = content(kOrbit);
    const std::string head = "time,x,y,z,vx,vy,vz\n";
    const std::string vector = "2022-08-28T04:22:02,1,2,3,4,5,6\n";
    const std::pair<std::string, std::string> cases[] = {
        {"", "f is empty"},
        {good.substr(0, 9000), "f is cut or no XML: "},
        {content(kBursts), "f is no orbit file: its outermost element is 'product', not 'Earth_Explorer_File'"},
        {with(good, "EARTH_FIXED", "MEAN_OF_DATE"), "Ref_Frame is 'MEAN_OF_DATE', not 'EARTH_FIXED'"},
        {with(good, "<Time_Reference>UTC", "<Time_Reference>TAI"), "Time_Reference is 'TAI', not 'UTC'"},
        {good.substr(0, good.find("<OSV>")) + "</List_of_OSVs></Data_Block></Earth_Explorer_File>",
         "f has no state vectors"},
        {with(good, "<VZ unit=\"m/s\">", "<VZ unit=\"m/s\">-inf"), "Data_Block/List_of_OSVs/OSV[1]/VZ is '-inf"},
        {"PK\x03\x04", "f is neither an orbit file nor a table of state vectors: line 1 has no column 'time'"},
        {"time,x,y,z,vx,vy\n", "line 1 has no column 'vz'"},
        {"time,x,x,y,z,vx,vy,vz\n", "f: line 1 has the column 'x' twice"},
        {head, "f has no state vectors"},
        {head + vector + "2022-08-28T04:22:12,1,2,,4,5,6\n", "f: line 3 has '' as 'z', not a finite number"},
        {head + vector + "2022-08-28T04:22:12,1,2,3\n", "f: line 3 has '' as 'vx', not a finite number"},
        {head + "yesterday,1,2,3,4,5,6\n", "f: line 2 has 'yesterday' as 'time', not a time such as"},
    };
    for (const auto& [text, message] : cases) {
        const std::string said = refusal<std::runtime_error>([&, &bad = text] { parseOrbitFile(bad, "f"); });
        EXPECT_NE(said.find(message), std::string::npos) << said << "\nnot\n" << message;
        EXPECT_EQ(said.find('\n'), std::string::npos);
    }
}

TEST(OrbitFile, MergesByPreferenceWithoutMixing) {
    const OrbitFile files[] = {vectorsFrom(100, 4, 1), vectorsFrom(200, 4, 2), vectorsFrom(64, 20, 3)};
    // The third fills before, between and after, but nowhere nearer than half a step to another file's vector.
    const OrbitFile all = merged(files);
    EXPECT_EQ(seconds(all.vectors), (std::vector<double>{64,  74,  84,  94,  100, 110, 120, 130, 144, 154,
                                                         164, 174, 184, 194, 200, 210, 220, 230, 244, 254}));
    EXPECT_EQ(all.vectors[4].state.x, 1);
    EXPECT_EQ(all.vectors[8].state.x, 3);

    OrbitFile other = vectorsFrom(0, 2, 1, "g");
    other.mission = "S1B";
    const OrbitFile wrong[] = {files[0], other};
    EXPECT_EQ(refusal<std::invalid_argument>([&] { merged(wrong); }), "g is of the satellite 'S1B', not 'S1A' as f");
    EXPECT_NE(refusal<std::invalid_argument>([&] { merged({}); }).find("no orbit file"), std::string::npos);
}

TEST(OrbitFile, ChoosesWhatLiesAroundOrSaysWhatItCovers) {
    OrbitFile file = vectorsFrom(0, 50, 0);
    const auto around = [&](double first, double last, double margin) {
        return seconds(vectorsAround(file, Instant{}.later(first), Instant{}.later(last), margin));
    };
    EXPECT_EQ(around(100, 120, 0), (std::vector<double>{100, 110, 120}));
    EXPECT_EQ(around(101, 119, 0), (std::vector<double>{100, 110, 120}));
    EXPECT_EQ(around(101, 119, 11), (std::vector<double>{90, 100, 110, 120, 130}));
    EXPECT_EQ(around(0, 5, 20).front(), 0);
    EXPECT_EQ(around(485, 490, 1e6).size(), 50U);

    const std::string span = "f reaches from 1970-01-01T00:00:00 to 1970-01-01T00:08:10 and does not cover ";
    EXPECT_EQ(refusal<std::runtime_error>([&] { around(-1, 5, 0); }),
              span + "1969-12-31T23:59:59 to 1970-01-01T00:00:05");
    EXPECT_EQ(refusal<std::runtime_error>([&] { around(485, 491, 0); }),
              span + "1970-01-01T00:08:05 to 1970-01-01T00:08:11");
    file.vectors.erase(file.vectors.begin() + 20, file.vectors.begin() + 25);
    EXPECT_EQ(refusal<std::runtime_error>([&] { around(195, 230, 60); }),
              "f has no vectors from 1970-01-01T00:03:10 to 1970-01-01T00:04:10 and does not cover "
              "1970-01-01T00:03:15 to 1970-01-01T00:03:50");
    EXPECT_EQ(around(300, 310, 60).front(), 250);  // the hole lies outside
}
