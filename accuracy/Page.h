#ifndef VORBEL_ACCURACY_PAGE_H
#define VORBEL_ACCURACY_PAGE_H

#include "Spread.h"

#include <functional>
#include <string>
#include <vector>

// The pieces of a page in Markdown, printed to the standard output.

namespace accuracy {

std::string text(const char* format, double value);

// In the unit that leaves a number between 1 and 1000.
std::string length(double m);
std::string speed(double mPerS);
std::string duration(double s);
std::string acceleration(double mPerS2);
/// To two digits, whatever the size.
std::string degrees(double degrees);

std::string maximumAndRms(const Spread& s, const std::function<std::string(double)>& unit);

/// With commas between the thousands.
std::string count(std::size_t number);

std::string code(const std::string& words);

void head(const std::vector<std::string>& cells);
void row(const std::vector<std::string>& cells);
void paragraph(const std::string& words);
void section(const std::string& title);

}  // namespace accuracy

#endif
