#pragma once

#include "common/AuditChange.h"

class QByteArray;

/// The values that differ between two JSON objects, given as texts, by their keys; those of a nested object as
/// "station1_4p/m11". A text that is no object counts as an empty one. Any thread.
AuditChanges jsonChanges(const QByteArray& before, const QByteArray& after);
