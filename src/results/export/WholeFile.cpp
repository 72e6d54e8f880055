#include "results/export/WholeFile.h"

#include "platform/System.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

namespace {

/// Hidden where a leading dot hides.
QString asideOf(const QString& path)
{
    const QFileInfo info(path);
    return QStringLiteral("%1/.%2.%3.part")
        .arg(info.path(), info.fileName())
        .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));
}

} // namespace

WholeFile::WholeFile(QString path)
    : m_path(std::move(path))
    , m_aside(asideOf(m_path))
{
}

WholeFile::~WholeFile()
{
    QFile::remove(m_aside);
}

QString WholeFile::commit()
{
    platform::flushFile(m_aside);
    return platform::replaceFile(m_aside, m_path);
}
