// The export macros of libOhmPlatform.so. The stand-ins are built with hidden
// visibility; a public header opens its declarations with
// OHM_PLATFORM_API_BEGIN and closes them with OHM_PLATFORM_API_END, so that
// what it declares (functions, classes with their virtual tables and type
// information, variables) is the library's interface and what a source file
// keeps to itself stays inside. Headers named *_internal.h don't open the
// region: what they share between sources is never exported.
//
// Test seams (*_testing.h) open it too, and the shipped library's link drops
// them again (OhmPlatform.map); they are exported only by the test build of
// the library, which the test programs load in its place.
#pragma once

#define OHM_PLATFORM_API_BEGIN _Pragma("GCC visibility push(default)")
#define OHM_PLATFORM_API_END _Pragma("GCC visibility pop")
