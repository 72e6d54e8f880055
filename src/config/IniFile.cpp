#include "config/IniFile.h"

#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#include <QMap>
#include <QRunnable>
#include <QThreadPool>

#include <mutex>

namespace {

/// The settings library takes any bytes for an INI file; a line without a group, a key or a comment shows that it is
/// something else.
QString notIni(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > HomeFiles::maxFileBytes)
        return QStringLiteral("larger than %1 bytes").arg(HomeFiles::maxFileBytes);
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().trimmed();
        const bool group = line.startsWith('[') && line.endsWith(']');
        const bool harmless = line.isEmpty() || line.startsWith(';') || line.startsWith('#');
        if (line.contains('\0') || !(group || harmless || line.contains('=')))
            return QStringLiteral("line %1 is neither a group nor a key").arg(number);
    }
    return {};
}

} // namespace

IniFile::IniFile(const QString& path)
    : m_path(path)
{
    const QString reason = notIni(path);
    if (!reason.isEmpty()) {
        const QString aside = HomeFiles::keepAside(path);
        m_problem = QStringLiteral("%1: %2; kept as %3").arg(path, reason, aside);
        qWarning("%s", qUtf8Printable(m_problem));
    }
    m_settings = std::make_unique<QSettings>(m_path, QSettings::IniFormat);
    m_settings->setIniCodec("UTF-8");
}

bool IniFile::commit()
{
    QDir().mkpath(QFileInfo(m_path).path());
    m_settings->sync();
    if (m_settings->status() == QSettings::NoError)
        return true;
    qWarning("%s: cannot be written", qUtf8Printable(m_path));
    return false;
}

void IniReadVisitor::field(const ConfigKey& key, QString& value, const QString& fallback)
{
    value = m_file.value(key, fallback).toString();
}

/// Settings written by hand have capitals, blanks, or 1 and 0.
void IniReadVisitor::field(const ConfigKey& key, bool& value, bool fallback)
{
    const QString text = m_file.value(key).toString().trimmed().toLower();
    const bool yes = text == QLatin1String("true") || text == QLatin1String("1");
    const bool no = text == QLatin1String("false") || text == QLatin1String("0");
    value = yes || (!no && fallback);
}

void IniReadVisitor::field(const ConfigKey& key, int& value, int fallback)
{
    bool good = false;
    const int number = m_file.value(key).toString().toInt(&good); // a variant's own conversion would wrap a large one
    value = good ? number : fallback;
}

void saveViewerScale(const QString& viewer, double scale)
{
    static std::mutex mutex; // guards what waits
    static QMap<QString, double> waiting;
    const std::lock_guard<std::mutex> lock(mutex);
    const bool isWriting = !waiting.isEmpty();
    waiting[viewer] = scale;
    if (isWriting)
        return;
    QThreadPool::globalInstance()->start(
        QRunnable::create([path = platform::inHome(QStringLiteral("/showImg.ini"))] {
            static std::mutex fileMutex; // one writer reads and replaces the file at a time
            const std::lock_guard<std::mutex> fileLock(fileMutex);
            QMap<QString, double> scales;
            {
                const std::lock_guard<std::mutex> innerLock(mutex);
                scales.swap(waiting);
            }
            IniFile file(path);
            for (auto it = scales.cbegin(); it != scales.cend(); ++it)
                file.settings().setValue(QStringLiteral("ShowImg/") + it.key(), it.value());
            file.commit();
        }));
}
