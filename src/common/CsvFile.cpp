#include "common/CsvFile.h"

#include <valvecell/CsvText.h>

#include <QSaveFile>

namespace {

QByteArray bytes(const QVector<QStringList>& lines)
{
    QString text = CsvText::start();
    for (const QStringList& line : lines) {
        QStringList cells;
        for (const QString& plain : line)
            cells << CsvText::cell(plain);
        text += CsvText::line(cells);
    }
    return text.toUtf8();
}

} // namespace

CsvFile::CsvFile(QString path, QVector<QStringList> lines, QObject* parent)
    : QThread(parent)
    , m_path(std::move(path))
    , m_lines(std::move(lines))
{
}

CsvFile::~CsvFile()
{
    wait();
}

void CsvFile::run()
{
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes(m_lines)) < 0 || !file.commit())
        m_error = file.errorString();
}
