#include "Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <system_error>

namespace vorbel::products {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

template <class Value>
std::optional<Value> whole(std::string_view text) noexcept {
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    Value value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::string readFile(const std::filesystem::path& file) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) {
        throw std::runtime_error(file.string() + " is a folder, not a file");
    }
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        throw std::runtime_error(file.string() + " cannot be opened");
    }
    // in pieces, since a pipe has no size
    constexpr std::size_t kPiece = std::size_t{1} << 20U;
    std::string text;
    std::size_t size = 0;
    while (in && size <= kLargestFile) {
        text.resize(size + kPiece);
        in.read(text.data() + size, kPiece);
        size += static_cast<std::size_t>(in.gcount());
    }
    if (in.bad()) {
        throw std::runtime_error(file.string() + " cannot be read");
    }
    refuseLarge(size, file.string());
    text.resize(size);
    return text;
}

void refuseLarge(std::size_t size, std::string_view source) {
    if (size > kLargestFile) {
        throw std::runtime_error(std::string(source) + " is larger than 64 MiB: no annotation or orbit file");
    }
}

std::string_view trimmed(std::string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string shown(std::string_view text) {
    constexpr std::size_t kShown = 40;
    const bool all = text.size() <= kShown;
    std::string start(all ? text : text.substr(0, kShown));
    std::replace_if(
        start.begin(), start.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, ' ');
    return "'" + start + (all ? "'" : "...'");
}

std::optional<double> finiteNumber(std::string_view text) noexcept {
    const std::optional<double> value = whole<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> integer(std::string_view text) noexcept {
    return whole<int>(text);
}

}  // namespace vorbel::products
