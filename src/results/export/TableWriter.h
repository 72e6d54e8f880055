#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

/// One column of an exported table.
struct ExportColumn
{
    enum Kind { Text, Number, Time };
    QString title;
    Kind kind = Text;
    int decimals = 0; ///< of a number; negative: as many as it has
    int width = 12;   ///< characters
};

/// Writes a table row by row into a file that takes its name only when it is whole. One thread.
class TableWriter
{
public:
    /// A text, a number, or a time of PartTable as qint64, as the column wants; an invalid one leaves it empty.
    using Row = QVector<QVariant>;

    virtual ~TableWriter() = default;

    virtual bool begin(const QVector<ExportColumn>& columns) = 0;
    virtual bool add(const Row& row) = 0;
    /// Puts the file in its place. Without it, nothing is left.
    virtual bool finish() = 0;
    /// File and reason; empty as long as nothing failed.
    const QString& error() const { return m_error; }

protected:
    bool fail(const QString& path, const QString& reason)
    {
        m_error = path + QStringLiteral(": ") + reason;
        return false;
    }

private:
    QString m_error;
};
