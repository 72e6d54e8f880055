#pragma once

#include "results/export/TableWriter.h"

#include <QCoreApplication>

#include <memory>

/// A table as a workbook: numbers as numbers, times as dates, the head stays in sight, each column can be filtered.
/// More rows than a sheet takes go on on a further one. Rows are kept in temporary files, not in memory.
class XlsxTable : public TableWriter
{
    Q_DECLARE_TR_FUNCTIONS(XlsxTable)

public:
    /// `rowsASheet`: without the head.
    XlsxTable(const QString& path, QString sheet, int rowsASheet = 1000000);
    ~XlsxTable() override;

    bool begin(const QVector<ExportColumn>& columns) override;
    bool add(const Row& row) override;
    /// A further sheet of texts and numbers, after the last row; the first of each line stands out.
    bool addSheet(const QString& name, const QVector<Row>& lines);
    bool finish() override;

private:
    struct Book;
    bool startSheet();
    void endSheet();

    const QString m_sheet;
    const int m_rowsASheet;
    QVector<ExportColumn> m_columns;
    std::unique_ptr<Book> m_book;
};
