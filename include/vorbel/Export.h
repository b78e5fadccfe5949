#ifndef VORBEL_EXPORT_H
#define VORBEL_EXPORT_H

/// \file
/// VORBEL_API marks what the dynamic library exports.
///
/// VORBEL_STATIC is defined by the CMake target and by vorbel.pc of a static library; vorbel_EXPORTS only while the
/// dynamic library itself is compiled.

#if defined(VORBEL_STATIC)
#define VORBEL_API
#elif defined(_WIN32)
#if defined(vorbel_EXPORTS)
#define VORBEL_API __declspec(dllexport)
#else
#define VORBEL_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define VORBEL_API __attribute__((visibility("default")))
#else
#define VORBEL_API
#endif

#endif
