#ifndef VORBEL_SCENE_EXPORT_H
#define VORBEL_SCENE_EXPORT_H

/// \file
/// VORBEL_SCENE_API marks what the dynamic library vorbel_scene exports.
///
/// VORBEL_SCENE_STATIC is defined by the CMake target and by vorbel-scene.pc of a static library;
/// vorbel_scene_EXPORTS only while the dynamic library itself is compiled.

#if defined(VORBEL_SCENE_STATIC)
#define VORBEL_SCENE_API
#elif defined(_WIN32)
#if defined(vorbel_scene_EXPORTS)
#define VORBEL_SCENE_API __declspec(dllexport)
#else
#define VORBEL_SCENE_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define VORBEL_SCENE_API __attribute__((visibility("default")))
#else
#define VORBEL_SCENE_API
#endif

/// The layer for whole arrays of pixels, on the class: SI units, degrees, heights above the WGS 84 ellipsoid, times in
/// seconds since an orbit's epoch, and a Status for each point.
namespace vorbel::scene {}

#endif
