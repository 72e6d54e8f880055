#pragma once

#include <QString>
#include <QVector>

namespace Simulation {

class Ledger;

/// What lies on the disk, against the ledger.
class Records
{
public:
    Records(QString home, Ledger& ledger)
        : m_home(std::move(home))
        , m_ledger(ledger)
    {
    }

    /// Every row that must be there is there once, in its order; and none besides. What may have been lost and is,
    /// is not looked for any more.
    void checkRows();
    /// Only the archive's own files, and what databases and savers make beside a file, may have been deleted.
    void checkDeleted();
    /// What the world itself deleted is not the cell's.
    static void forgetDeleted();

private:
    void checkFile(const QString& path);
    std::size_t rowOf(const QString& text, std::size_t first) const;

    const QString m_home;
    Ledger& m_ledger;
    QVector<bool> m_seen; ///< of the ledger's rows
};

} // namespace Simulation
