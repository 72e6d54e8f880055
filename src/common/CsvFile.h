#pragma once

#include <QStringList>
#include <QVector>

class QAbstractItemModel;

/// Tables as files of comma-separated text for spreadsheets.
namespace CsvFile {

using Lines = QVector<QStringList>;

/// A table as it is shown: in its order, the texts of its cells below those of its header. On the table's thread.
Lines linesOf(const QAbstractItemModel& table);

/// Replaces a file of that name only when all was written. Returns file and reason when it was not, else an empty text.
/// Any thread; better none that must not wait, for a folder may lie on a slow stick or in the network.
QString write(const QString& path, const Lines& lines);

} // namespace CsvFile
