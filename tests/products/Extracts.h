#ifndef VORBEL_TESTS_PRODUCTS_EXTRACTS_H
#define VORBEL_TESTS_PRODUCTS_EXTRACTS_H

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

inline const std::string kExtracts = VORBEL_EXTRACTS;
inline const std::string kBursts = kExtracts + "s1a-iw1-slc-hh-20220414t102211-20220414t102236-042768-051aa4-001.xml";
inline const std::string kHawaii = kExtracts + "s1a-iw3-slc-vv-20220828t042307-20220828t042335-044748-0557c6-006.xml";
inline const std::string kStripmap = kExtracts + "s1a-s3-slc-vh-20210401t152855-20210401t152914-037258-04638e-001.xml";
inline const std::string kGround = kExtracts + "s1a-iw-grd-vv-20260606t181903-20260606t181928-064852-082c02-001.xml";
inline const std::string kOrbit =
    kExtracts + "S1A_OPER_AUX_POEORB_OPOD_20220917T081749_V20220827T225942_20220829T005942.EOF";

inline std::string content(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// The text with the first occurrence of a part, which must be there, replaced.
inline std::string with(std::string text, std::string_view part, std::string_view replacement) {
    const std::size_t place = text.find(part);
    EXPECT_NE(place, std::string::npos) << part;
    return place == std::string::npos ? text : text.replace(place, part.size(), replacement);
}

/// What a function that must throw an `Error` says.
template <class Error, class Call>
std::string refusal(Call call) {
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "(nothing was refused)";
}

#endif
