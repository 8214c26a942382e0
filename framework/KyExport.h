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

// The framework is a shared library too: its globals (window registry, current string
// module, stock objects, text engine) must be one per process, not one per module.
#ifdef KYFW_BUILD
#define KYFW_API KY_DECL_EXPORT
#else
#define KYFW_API KY_DECL_IMPORT
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
