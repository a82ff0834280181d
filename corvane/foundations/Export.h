// CORVANE_API marks what the shared library exports; everything else stays hidden.
#pragma once

#if defined(CORVANE_STATIC)
#define CORVANE_API
#elif defined(_WIN32) && defined(CORVANE_BUILDING)
#define CORVANE_API __declspec(dllexport)
#elif defined(_WIN32)
#define CORVANE_API __declspec(dllimport)
#else
#define CORVANE_API __attribute__((visibility("default")))
#endif
