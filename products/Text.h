#ifndef VORBEL_PRODUCTS_TEXT_H
#define VORBEL_PRODUCTS_TEXT_H

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vorbel::products {

/// No annotation or orbit file comes near; what does is something else.
constexpr std::size_t kLargestFile = std::size_t{64} << 20U;

/// The content of a file.
/// \throws std::runtime_error  it cannot be read or is larger than kLargestFile
std::string readFile(const std::filesystem::path& file);

/// \throws std::runtime_error  larger than kLargestFile
void refuseLarge(std::size_t size, std::string_view source);

/// Without white space at its ends.
std::string_view trimmed(std::string_view text) noexcept;

/// As messages show it: in quotes, shortened, without control characters.
std::string shown(std::string_view text);

/// The finite number that the text is, nothing beside it but white space and a plus sign.
std::optional<double> finiteNumber(std::string_view text) noexcept;
std::optional<int> integer(std::string_view text) noexcept;

}  // namespace vorbel::products

#endif
