#include "Text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vorbel::tool {
namespace {

constexpr std::array<double, 10> kPowers{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
constexpr double kExactIntegers = 9e15;  // below 2^53
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kUnitsPerSecond = 1'000'000'000;  // by kSecondDecimals
constexpr std::size_t kDateLength = 11;                  // with the T

/// Appends a number with at least so many digits.
void appendPadded(std::string& text, std::int64_t value, int digits) {
    std::array<char, 20> buffer{};
    auto* at = buffer.data() + buffer.size();
    for (; value > 0 || digits > 0; value /= 10, --digits) {
        *--at = static_cast<char>('0' + value % 10);
    }
    text.append(at, buffer.data() + buffer.size());
}

}  // namespace

void appendFixed(std::string& text, double value, int decimals) {
    const double power = kPowers[static_cast<std::size_t>(decimals)];
    if (!std::isfinite(value)) {
        return;
    }
    if (!(std::abs(value) * power < kExactIntegers)) {
        std::array<char, 400> buffer{};
        const auto [end, error] =
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
        text.append(buffer.data(), error == std::errc() ? end : buffer.data());
        return;
    }
    const std::int64_t rounded = std::llround(std::abs(value) * power);
    if (value < 0.0 && rounded != 0) {
        text += '-';
    }
    const auto unit = static_cast<std::int64_t>(power);
    appendPadded(text, rounded / unit, 1);
    if (decimals > 0) {
        text += '.';
        appendPadded(text, rounded % unit, decimals);
    }
}

std::string fixed(double value, int decimals) {
    std::string text;
    appendFixed(text, value, decimals);
    return text;
}

double parseNumber(std::string_view text) noexcept {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    constexpr const char* kBlanks = " \t";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return kNone;
    }
    text = text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    double value = kNone;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : kNone;
}

UtcText::UtcText(const scene::Instant& epoch)
    : m_epoch(epoch), m_epochSecond((epoch.seconds % kSecondsPerDay + kSecondsPerDay) % kSecondsPerDay),
      m_date(epoch.text(0).substr(0, kDateLength)) {}

void UtcText::append(std::string& text, double seconds) {
    if (!(std::abs(seconds) * static_cast<double>(kUnitsPerSecond) < kExactIntegers)) {
        return;
    }
    const std::int64_t units = m_epochSecond * kUnitsPerSecond +
                               std::llround((m_epoch.fraction + seconds) * static_cast<double>(kUnitsPerSecond));
    constexpr std::int64_t kUnitsPerDay = kSecondsPerDay * kUnitsPerSecond;
    const std::int64_t ofDay = (units % kUnitsPerDay + kUnitsPerDay) % kUnitsPerDay;
    const std::int64_t day = (units - ofDay) / kUnitsPerDay;
    if (day != m_day) {
        m_date = scene::Instant{m_epoch.seconds + day * kSecondsPerDay, 0.0}.text(0).substr(0, kDateLength);
        m_day = day;
    }
    text += m_date;
    const std::int64_t second = ofDay / kUnitsPerSecond;
    appendPadded(text, second / 3600, 2);
    text += ':';
    appendPadded(text, second / 60 % 60, 2);
    text += ':';
    appendPadded(text, second % 60, 2);
    text += '.';
    appendPadded(text, ofDay % kUnitsPerSecond, kSecondDecimals);
}

}  // namespace vorbel::tool
