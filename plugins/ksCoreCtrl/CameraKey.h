#pragma once

#include <QString>

/// Why a new camera cannot have that key, in the operator's language; empty when it can. Pure function.
QString cameraKeyProblem(const QString& key);
