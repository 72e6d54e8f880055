#pragma once

#include <QStringList>
#include <QThread>
#include <QVector>

/// Writes a table as comma-separated text for spreadsheets, on a thread of its own: a folder may lie on a slow stick
/// or in the network. UTF-8 with a byte order mark, lines end with CR LF. Replaces a file of that name only when all
/// was written. Start it with start(); when finished() comes, error() tells how it went.
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

    /// One cell: quoted where needed, and with an apostrophe in front where a spreadsheet would take the text for a
    /// formula, because it starts with =, +, -, @, a tab or a line break.
    static QString cell(const QString& text);

protected:
    void run() override;

private:
    const QString m_path;
    const QVector<QStringList> m_lines;
    QString m_error; // written by the thread, read after finished()
};
