#pragma once

#include "Balance.h"

#include <QVector>

/// When something went wrong, by the clock of the rows; milliseconds since the epoch.
struct FaultTime
{
    qint64 beginMs = 0;
    qint64 endMs = 0;
};

/// Looks at what the cell keeps on its disk, as another program. Pictures that a row names are looked at while the cell
/// runs and then deleted, so that hours fit on a disk.
class RecordsAudit
{
public:
    struct Pictures
    {
        int good = 0;         ///< named by a row, and whole
        int bad = 0;          ///< named by a row, and missing or no whole picture
        int withoutRow = 0;   ///< that no row names: the program was killed between the two
        int unnamed = 0;      ///< rows that should name one and do not, and no fault lost it
        int lostByFault = 0;  ///< such rows that a fault explains
        int givenUp = 0;      ///< such rows, as many as the program's log says that it gave up under load
        int sourceImages = 0; ///< in the other archive
        QStringList examples;
    };

    explicit RecordsAudit(QString home);

    /// Looks at the pictures of the rows that were there at the last sweep; `all`: of all rows.
    void sweep(bool all);
    /// After the program's end, unless none was to be archived: what becomes of rows without picture. Pictures that
    /// waited at a kill are lost with it.
    void judgePictures(const QVector<qint64>& killsMs, const QVector<FaultTime>& faults);
    const Pictures& pictures() const { return m_pictures; }

    /// All rows, in the order in which they were written.
    QVector<RecordedRow> rows() const;
    /// Deletes a row in the middle: what is balanced then must not be zero.
    void spoil() const;

    /// What is wrong with the databases, and which files were put aside; empty when nothing is. While no program runs:
    /// copies are looked at, so that the program has its own to recover. Larger ones than `maxBytes` are passed over.
    QStringList damages(qint64 maxBytes) const;

private:
    struct Shown
    {
        qint64 timeMs = 0;
        bool named = false;
    };

    void look(const RecordedRow& row);
    int givenUpByLog() const;
    QString file(const char* name) const { return m_home + QLatin1String(name); }

    const QString m_home;
    qint64 m_seen = 0;      ///< number of the last row at the last sweep
    qint64 m_lookedAt = 0;  ///< whose picture was looked at
    QVector<Shown> m_shown; ///< rows with an image, in their order
    Pictures m_pictures;
};
