#pragma once

#include <QStringList>
#include <QThread>
#include <QVector>

/// Writes a table as comma-separated text for spreadsheets, on a thread of its own: a folder may lie on a slow stick
/// or in the network. Replaces a file of that name only when all was written. Start it with start(); when finished()
/// comes, error() tells how it went.
class CsvFile : public QThread
{
    Q_OBJECT

public:
    CsvFile(QString path, QVector<QStringList> lines, QObject* parent = nullptr);
    /// Waits until the file is written.
    ~CsvFile() override;

    QString path() const { return m_path; }
    /// Empty when the file was written.
    QString error() const { return m_error; }

protected:
    void run() override;

private:
    const QString m_path;
    const QVector<QStringList> m_lines;
    QString m_error; // written by the thread, read after finished()
};
