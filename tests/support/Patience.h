#pragma once

#include <QtTest>

// Included by the build before everything else of a test. Five seconds are no patience on a machine that compiles
// beside the tests, or runs them under a sanitizer; who fails, fails a little later.
constexpr int patienceMs = 240000;

#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define QTRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT((condition), patienceMs)
#define QTRY_VERIFY2(condition, message) QTRY_VERIFY2_WITH_TIMEOUT((condition), (message), patienceMs)
#define QTRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT((actual), (expected), patienceMs)
