#ifndef VORBEL_SCENE_INSTANT_H
#define VORBEL_SCENE_INSTANT_H

/// \file
/// Instants of UTC.

#include <vorbel/scene/Export.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace vorbel::scene {

/// An instant of UTC, to better than 1e-15 s.
///
/// Every day counts 86400 seconds: a difference of two instants is one second short for each leap second between them,
/// as in the class's own time. No leap second has been inserted since 2017. The second 60 is refused.
struct Instant {
    std::int64_t seconds = 0;  ///< whole seconds since 1970 January 1, 0h UTC, negative before
    double fraction = 0.0;     ///< s, [0, 1)

    /// From calendar fields, Gregorian.
    /// \throws std::invalid_argument  a field outside its range, with one sentence that names it
    VORBEL_SCENE_API static Instant of(int year, int month, int day, int hour = 0, int minute = 0, double second = 0.0);

    /// From text such as "2022-04-14T10:22:07.036420", with 0 to 15 decimals of the second; a blank may stand for the
    /// T, and "Z" or nothing at the end, also "UTC=" before it as orbit files have it.
    /// \throws std::invalid_argument  any other text, with one sentence that shows it
    VORBEL_SCENE_API static Instant parse(std::string_view text);

    /// ISO 8601 text, rounded to so many decimals of the second (0 to 15), without a "Z".
    /// \throws std::invalid_argument  any other number of decimals
    VORBEL_SCENE_API std::string text(int decimals = 6) const;

    /// The instant so many seconds later, or earlier if negative.
    /// \throws std::invalid_argument  not-a-number, or 2^53 s and more
    VORBEL_SCENE_API Instant later(double bySeconds) const;

    /// Seconds from `other` to this instant; exact to the last bit of the result.
    VORBEL_SCENE_API double since(const Instant& other) const noexcept;

    /// In the order of time.
    // clang-tidy takes the 0 that a comparison is rewritten with for a pointer. NOLINTNEXTLINE(modernize-use-nullptr)
    friend constexpr auto operator<=>(const Instant&, const Instant&) = default;
};

}  // namespace vorbel::scene

#endif
