#pragma once

#include <QtGlobal>

// A module or a host shares Qt's objects with the program, so both have to be built with the same major version.
#if QT_VERSION < QT_VERSION_CHECK(5, 15, 0) || QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#error "ValveCell is a program of Qt 5.15: build hosts and modules with Qt 5.15, not with another major version"
#endif
