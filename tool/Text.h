#ifndef VORBEL_TOOL_TEXT_H
#define VORBEL_TOOL_TEXT_H

#include <vorbel/scene/Instant.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace vorbel::tool {

// Decimals of what is printed: a tenth of a millimetre on the ground, or less.
inline constexpr int kAngleDecimals = 9;    // of latitude and longitude in degrees
inline constexpr int kLengthDecimals = 4;   // of m
inline constexpr int kSightDecimals = 6;    // of incidence, look angle and azimuth in degrees
inline constexpr int kImageDecimals = 6;    // of lines and pixels
inline constexpr int kDopplerDecimals = 4;  // of Hz
inline constexpr int kSecondDecimals = 9;   // of instants

/// Appends a number with so many decimals; nothing if it is not finite.
void appendFixed(std::string& text, double value, int decimals);

/// The number as appendFixed() has it.
std::string fixed(double value, int decimals);

/// A number, with blanks around it allowed; not-a-number for any other text.
double parseNumber(std::string_view text) noexcept;

/// Writes times that count from an instant as UTC, such as 2022-04-14T10:22:07.036420000.
class UtcText {
public:
    explicit UtcText(const scene::Instant& epoch);

    /// Nothing if the time is not finite.
    void append(std::string& text, double seconds);

private:
    scene::Instant m_epoch;
    std::int64_t m_epochSecond;  // of its day
    std::int64_t m_day = 0;      // that m_date is of, counted from the epoch's
    std::string m_date;
};

}  // namespace vorbel::tool

#endif
