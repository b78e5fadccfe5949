// Instants of UTC: calendar, text, differences.

#include <vorbel/scene/Instant.h>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

using vorbel::scene::Instant;

namespace {

TEST(Instant, CountsTheDaysOfTheGregorianCalendar) {
    // Unix time of published instants
    EXPECT_EQ(Instant::of(1970, 1, 1).seconds, 0);
    EXPECT_EQ(Instant::of(2001, 9, 9, 1, 46, 40.0).seconds, 1000000000);
    EXPECT_EQ(Instant::parse("2009-02-13T23:31:30Z").seconds, 1234567890);
    EXPECT_EQ(Instant::of(1900, 3, 1).since(Instant::of(1900, 2, 28)), 86400.0);
    EXPECT_EQ(Instant::of(2000, 3, 1).since(Instant::of(2000, 2, 28)), 2 * 86400.0);
    // over the leap second at the end of 2016
    EXPECT_EQ(Instant::of(2017, 1, 1).since(Instant::of(2016, 12, 31, 23, 59, 59.0)), 1.0);
}

TEST(Instant, GivesTextBack) {
    for (const char* text :
         {"2022-04-14T10:22:07.036420", "1969-12-31T23:59:59.999999", "0001-01-01T00:00:00.000001"}) {
        EXPECT_EQ(Instant::parse(text).text(), text);
    }
    EXPECT_EQ(Instant::parse("UTC=2023-08-23T12:31:39.035127").text(6), "2023-08-23T12:31:39.035127");
    EXPECT_EQ(Instant::parse("2023-08-23 12:31:39").text(0), "2023-08-23T12:31:39");
    EXPECT_EQ(Instant::parse("2023-08-23T12:31:39.123456789012345").text(15), "2023-08-23T12:31:39.123456789012345");
    EXPECT_EQ(Instant::parse("2023-12-31T23:59:59.9996").text(3), "2024-01-01T00:00:00.000");
}

TEST(Instant, RefusesWhatIsNone) {
    for (const char* text : {"", "2022-04-14", "2022-02-29T00:00:00", "2022-13-01T00:00:00", "2022-04-14T24:00:00",
                             "2016-12-31T23:59:60", "2022-04-14T10:22:07.", "2022-04-14T10:22:07.0000000000000001",
                             "2022-04-14T10:22:07+01:00", "2022-04-14T10:22:7", "TAI=2022-04-14T10:22:07", " 2022"}) {
        EXPECT_THROW(Instant::parse(text), std::invalid_argument) << text;
    }
    EXPECT_THROW(Instant::of(2022, 4, 14, 0, 0, -1e-9), std::invalid_argument);
    EXPECT_THROW(Instant::of(2022, 4, 14, 0, 0, std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
    EXPECT_THROW(Instant().later(std::numeric_limits<double>::infinity()), std::invalid_argument);
    EXPECT_THROW(Instant().text(16), std::invalid_argument);
}

TEST(Instant, DifferencesAreRoundedOnce) {
    const Instant a{1000000000, 0x1p-52};
    const Instant b{999999999, 1.0 - 0x1p-52};
    EXPECT_EQ(a.since(b), 0x1p-51);
    EXPECT_EQ(b.since(a), -0x1p-51);
    EXPECT_EQ((Instant{a.seconds, 0x1p-60}).since(b), 0x1p-52 + 0x1p-60);
    EXPECT_EQ(b.later(0x1p-51), a);
    EXPECT_EQ(a.later(-0x1p-51), b);
    EXPECT_EQ(Instant::parse("2022-04-14T10:22:07.036420").since(Instant::parse("2022-04-14T10:21:07.036419")),
              60.000001);
}

}  // namespace
