#pragma once

#include "Subject.h"

#include <QVector>

/// One part of a contract; each runs in a process of its own, so that one that kills or hangs leaves the others.
struct Check
{
    const char* name;
    Subject::Kind kind;
    void (*run)(Subject&);
};

namespace Checks {

QVector<Check> ofCoreCtrl();
QVector<Check> ofEngine();
QVector<Check> ofOthers(); ///< designer, serial port, users

/// The loading first, then what belongs to that kind.
QVector<Check> of(Subject::Kind kind);

} // namespace Checks
