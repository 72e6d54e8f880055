#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>

#include <algorithm>

/// One value that a dialog changed, for the audit lines of the system log. Names are keys, the same in every language.
struct AuditChange
{
    QString name;   ///< the key in its file, or a path such as "model/W18/plcIndex"
    QString before; ///< empty when there was none
    QString after;  ///< empty when there is none any more
};

using AuditChanges = QVector<AuditChange>;

Q_DECLARE_METATYPE(AuditChange)

/// Whether a change is of a key that begins with `group`.
inline bool touches(const AuditChanges& changes, const char* group)
{
    return std::any_of(changes.begin(), changes.end(),
                       [group](const AuditChange& change) { return change.name.startsWith(QLatin1String(group)); });
}

/// The values that differ between two JSON objects, given as texts, by their keys; those of a nested object as
/// "station1_4p/m11". A text that is no object counts as an empty one. Any thread.
AuditChanges jsonChanges(const QByteArray& before, const QByteArray& after);
