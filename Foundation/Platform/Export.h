// ZELKOR_API marks what the shared library exports; everything else stays hidden in it.
#ifndef FOUNDATION_PLATFORM_EXPORT_H
#define FOUNDATION_PLATFORM_EXPORT_H

#if defined(_WIN32)
#if defined(ZELKOR_BUILDS)
#define ZELKOR_API __declspec(dllexport)
#else
#define ZELKOR_API __declspec(dllimport)
#endif
#else
#define ZELKOR_API __attribute__((visibility("default")))
#endif

#endif
