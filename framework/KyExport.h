// Export macros of the KyGraph libraries: one per library, dllexport/dllimport on Windows,
// default visibility on ELF (the build hides everything else with -fvisibility=hidden).
#pragma once

#if defined(_WIN32)
#define KY_DECL_EXPORT __declspec(dllexport)
#define KY_DECL_IMPORT __declspec(dllimport)
#else
#define KY_DECL_EXPORT __attribute__((visibility("default")))
#define KY_DECL_IMPORT __attribute__((visibility("default")))
#endif

// The framework is a static library linked into every shared library. On ELF its classes
// keep default visibility so that type information, vtables and the few framework-wide
// globals (current string table, stock objects) are one per process, not one per module.
#if defined(_WIN32)
#define KYFW_API
#else
#define KYFW_API __attribute__((visibility("default")))
#endif

#ifdef KYARITHM_BUILD
#define KYARITHM_API KY_DECL_EXPORT
#else
#define KYARITHM_API KY_DECL_IMPORT
#endif

#ifdef WIDGETRY_BUILD
#define WIDGETRY_API KY_DECL_EXPORT
#else
#define WIDGETRY_API KY_DECL_IMPORT
#endif

#ifdef KYGRAPH_BUILD
#define KYGRAPH_API KY_DECL_EXPORT
#else
#define KYGRAPH_API KY_DECL_IMPORT
#endif
