// CORVANE_API marks what the shared library exports; everything else stays hidden.
#pragma once

#ifndef __cpp_exceptions
#error "corvane reports a lack of memory by an exception: compile with exceptions"
#endif

#if defined(CORVANE_STATIC)
#define CORVANE_API
#elif defined(_WIN32) && defined(CORVANE_BUILDING)
#define CORVANE_API __declspec(dllexport)
#elif defined(_WIN32)
#define CORVANE_API __declspec(dllimport)
#else
#define CORVANE_API __attribute__((visibility("default")))
#endif
