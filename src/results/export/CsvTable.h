#pragma once

#include "results/export/TableWriter.h"

#include <QSaveFile>

/// A table as comma-separated text (see CsvText): numbers as such, texts never as formulas.
class CsvTable : public TableWriter
{
public:
    explicit CsvTable(const QString& path);

    bool begin(const QVector<ExportColumn>& columns) override;
    bool add(const Row& row) override;
    bool finish() override;

private:
    bool write(const QStringList& cells);

    QSaveFile m_file;
    QVector<ExportColumn> m_columns;
};
