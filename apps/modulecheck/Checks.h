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
QVector<Check> ofCameras(); ///< optional interfaces of a core control
QVector<Check> ofEngine();
QVector<Check> ofScreens(); ///< designer, users
QVector<Check> ofLine();

inline QVector<Check> of(Subject::Kind kind)
{
    QVector<Check> checks;
    for (const Check& check : ofCoreCtrl() + ofCameras() + ofEngine() + ofScreens() + ofLine()) {
        if (check.kind == kind)
            checks.append(check);
    }
    return checks;
}

} // namespace Checks
