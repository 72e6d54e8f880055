#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>

/// One value that a dialog changed, for the audit lines of the system log. Names are keys, the same in every language.
struct AuditChange
{
    QString name;
    QString before;
    QString after;
};

using AuditChanges = QVector<AuditChange>;

Q_DECLARE_METATYPE(AuditChange)
