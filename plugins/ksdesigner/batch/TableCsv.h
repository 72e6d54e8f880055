#pragma once

#include <QByteArray>

class QAbstractItemModel;

/// A table as comma-separated text for spreadsheets: UTF-8 with a byte order mark, header first, lines end with CR LF.
namespace TableCsv {

/// The table as it is shown: in its order, with its header and the texts of its cells.
QByteArray write(const QAbstractItemModel& table);

/// One cell: quoted where needed, and with an apostrophe in front where a spreadsheet would take the text for a
/// formula, because it starts with =, +, -, @, a tab or a line break.
QString cell(const QString& text);

} // namespace TableCsv
