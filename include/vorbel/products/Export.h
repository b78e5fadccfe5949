#ifndef VORBEL_PRODUCTS_EXPORT_H
#define VORBEL_PRODUCTS_EXPORT_H

/// \file
/// VORBEL_PRODUCTS_API marks what the dynamic library vorbel_products exports.
///
/// VORBEL_PRODUCTS_STATIC is defined by the CMake target and by vorbel-products.pc of a static library;
/// vorbel_products_EXPORTS only while the dynamic library itself is compiled.

#if defined(VORBEL_PRODUCTS_STATIC)
#define VORBEL_PRODUCTS_API
#elif defined(_WIN32)
#if defined(vorbel_products_EXPORTS)
#define VORBEL_PRODUCTS_API __declspec(dllexport)
#else
#define VORBEL_PRODUCTS_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define VORBEL_PRODUCTS_API __attribute__((visibility("default")))
#else
#define VORBEL_PRODUCTS_API
#endif

#endif
