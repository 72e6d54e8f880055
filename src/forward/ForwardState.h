#pragma once

#include <QHash>
#include <QString>

/// What a cell remembers of its forwarding, in "user/forward.json" of its home: who it is, and how far each stream was
/// acknowledged. It is in no backup: a home that was copied by one is another cell.
struct ForwardState
{
    struct Stream
    {
        QString epoch;   ///< empty: never forwarded
        qint64 row = 0;  ///< acknowledged up to here
        QString time;    ///< of the row
        qint64 seen = 0; ///< the newest row when this was written: with fewer, the database is another
    };

    QString cellId;
    quint64 sessions = 0; ///< Sparkplug's "bdSeq"
    QHash<QString, Stream> streams;

    /// A file that is missing begins a new cell; so does one that is damaged, which is kept aside: `problem` says so.
    static ForwardState load(const QString& home, QString* problem);
    /// Replaces the file in one step.
    bool save(const QString& home, QString* error) const;

    static QString freshId();
    static QString pathIn(const QString& home) { return home + QStringLiteral("/user/forward.json"); }
};
