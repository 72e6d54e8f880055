#pragma once

#include <QByteArray>

class QAbstractItemModel;

/// A table as comma-separated text for spreadsheets, header first.
namespace TableCsv {

/// The table as it is shown: in its order, with its header and the texts of its cells.
QByteArray write(const QAbstractItemModel& table);

} // namespace TableCsv
