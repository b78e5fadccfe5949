#include <vorbel/scene/Instant.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace {

using vorbel::scene::Instant;

constexpr std::int64_t kDay = 86400;           // s
constexpr int kMostDecimals = 15;              // 10^15 and every fraction in its units are exact doubles
constexpr double kLongestInterval = 0x1p53;    // s, to which doubles hold every whole second
constexpr std::size_t kLongestQuotation = 60;  // characters of a text that an error shows

constexpr std::array<double, kMostDecimals + 1> kPowersOfTen = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

[[noreturn]] void refuse(const std::string& sentence) {
    throw std::invalid_argument(sentence);
}

void requireField(const char* name, int value, int first, int last) {
    if (value < first || value > last) {
        refuse(std::string("the ") + name + " of an instant is " + std::to_string(value) + ", it must be from " +
               std::to_string(first) + " to " + std::to_string(last));
    }
}

/// Whole seconds since 1970 of calendar fields.
std::int64_t secondsSince1970(int year, int month, int day, int hour, int minute, int second) {
    requireField("year", year, 1, 9999);
    requireField("month", month, 1, 12);
    const std::chrono::year_month ofYear = std::chrono::year(year) / month;
    const std::chrono::day last = (ofYear / std::chrono::last).day();
    requireField("day", day, 1, static_cast<int>(static_cast<unsigned>(last)));
    requireField("hour", hour, 0, 23);
    requireField("minute", minute, 0, 59);
    if (second == 60) {
        refuse("the second of an instant is 60, a leap second, which has no place in days of 86400 s");
    }
    requireField("second", second, 0, 59);
    const std::chrono::sys_days date = ofYear / day;
    return date.time_since_epoch().count() * kDay + hour * 3600 + minute * 60 + second;
}

/// What is left of a text while it is read from its front.
class Reader {
public:
    explicit Reader(std::string_view text) : m_text(text), m_rest(text) {}

    bool skip(std::string_view word) {
        if (!m_rest.starts_with(word)) {
            return false;
        }
        m_rest.remove_prefix(word.size());
        return true;
    }

    void expect(bool found) const {
        if (!found) {
            const std::string quotation(m_text.substr(0, kLongestQuotation));
            refuse("'" + quotation + "' is no instant of UTC such as 2022-04-14T10:22:07.036420");
        }
    }

    int number(int digits) {
        int value = 0;
        for (int i = 0; i < digits; ++i) {
            expect(atDigit());
            value = value * 10 + digit();
        }
        return value;
    }

    double fraction() {
        double value = 0.0;
        double unit = 1.0;
        while (atDigit() && unit < kPowersOfTen.back()) {
            value = value * 10.0 + digit();
            unit *= 10.0;
        }
        expect(unit > 1.0 && !atDigit());
        return value / unit;
    }

    bool atEnd() const {
        return m_rest.empty();
    }

private:
    bool atDigit() const {
        return !m_rest.empty() && m_rest.front() >= '0' && m_rest.front() <= '9';
    }

    int digit() {
        const int value = m_rest.front() - '0';
        m_rest.remove_prefix(1);
        return value;
    }

    std::string_view m_text;
    std::string_view m_rest;
};

}  // namespace

Instant Instant::of(int year, int month, int day, int hour, int minute, double second) {
    if (!(second >= 0.0 && second < 61.0)) {
        refuse("the second of an instant is " + std::to_string(second) + ", it must be from 0 to less than 60");
    }
    const double whole = std::floor(second);
    return {secondsSince1970(year, month, day, hour, minute, static_cast<int>(whole)), second - whole};
}

Instant Instant::parse(std::string_view text) {
    Reader reader(text);
    reader.skip("UTC=");
    const int year = reader.number(4);
    reader.expect(reader.skip("-"));
    const int month = reader.number(2);
    reader.expect(reader.skip("-"));
    const int day = reader.number(2);
    reader.expect(reader.skip("T") || reader.skip(" "));
    const int hour = reader.number(2);
    reader.expect(reader.skip(":"));
    const int minute = reader.number(2);
    reader.expect(reader.skip(":"));
    const int second = reader.number(2);
    const double fraction = reader.skip(".") ? reader.fraction() : 0.0;
    reader.skip("Z");
    reader.expect(reader.atEnd());
    return {secondsSince1970(year, month, day, hour, minute, second), fraction};
}

std::string Instant::text(int decimals) const {
    requireField("number of decimals", decimals, 0, kMostDecimals);
    const double unit = kPowersOfTen[static_cast<std::size_t>(decimals)];
    double parts = std::round(fraction * unit);
    std::int64_t whole = seconds;
    if (parts == unit) {
        parts = 0.0;
        ++whole;
    }
    const std::chrono::sys_seconds time{std::chrono::seconds(whole)};
    const auto midnight = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(midnight);
    const std::chrono::hh_mm_ss clock(time - midnight);

    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    std::string text = buffer.data();
    if (decimals > 0) {
        std::snprintf(buffer.data(), buffer.size(), ".%0*.0f", decimals, parts);
        text += buffer.data();
    }
    return text;
}

Instant Instant::later(double bySeconds) const {
    if (!(std::abs(bySeconds) < kLongestInterval)) {
        refuse("an instant cannot move by " + std::to_string(bySeconds) + " s");
    }
    const double whole = std::floor(bySeconds);
    double part = fraction + (bySeconds - whole);
    std::int64_t carry = 0;
    if (part >= 1.0) {
        part -= 1.0;
        carry = 1;
    }
    return {seconds + static_cast<std::int64_t>(whole) + carry, part};
}

double Instant::since(const Instant& other) const noexcept {
    // Rounded once: the sum of three exact numbers with the rounding of both additions given back
    const auto whole = static_cast<double>(seconds - other.seconds);
    const double first = whole + fraction;
    const double firstError = fraction - (first - whole);
    const double second = first - other.fraction;
    const double part = second - first;
    const double secondError = (first - (second - part)) - (other.fraction + part);
    return second + (firstError + secondError);
}
