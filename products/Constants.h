#ifndef VORBEL_PRODUCTS_CONSTANTS_H
#define VORBEL_PRODUCTS_CONSTANTS_H

namespace vorbel::products {

constexpr double kSpeedOfLight = 299792458.0;  // m/s, by definition of the metre

}  // namespace vorbel::products

#endif
