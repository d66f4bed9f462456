// Export and import of the library borders, for every module of the system.
//
// Each host library defines its own NUV_<NAME>_BUILD while it is built; whoever else includes
// its headers imports. Everything not marked stays hidden on every platform.
#pragma once

#if defined(_WIN32)
#define NUV_EXPORT __declspec(dllexport)
#define NUV_IMPORT __declspec(dllimport)
#else
#define NUV_EXPORT __attribute__((visibility("default")))
#define NUV_IMPORT NUV_EXPORT
#endif

#if defined(NUV_TYPES_BUILD)
#define NUV_TYPES_API NUV_EXPORT
#else
#define NUV_TYPES_API NUV_IMPORT
#endif

#if defined(NUV_OBJECT_BUILD)
#define NUV_OBJECT_API NUV_EXPORT
#else
#define NUV_OBJECT_API NUV_IMPORT
#endif

#if defined(NUV_SETTING_BUILD)
#define NUV_SETTING_API NUV_EXPORT
#else
#define NUV_SETTING_API NUV_IMPORT
#endif

#if defined(NUV_LOG_BUILD)
#define NUV_LOG_API NUV_EXPORT
#else
#define NUV_LOG_API NUV_IMPORT
#endif

#if defined(NUV_OS_BUILD)
#define NUV_OS_API NUV_EXPORT
#else
#define NUV_OS_API NUV_IMPORT
#endif

#if defined(NUV_GEOMETRY_BUILD)
#define NUV_GEOMETRY_API NUV_EXPORT
#else
#define NUV_GEOMETRY_API NUV_IMPORT
#endif
