#include "config/IniFile.h"

#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#include <QMap>
#include <QRunnable>
#include <QThreadPool>

#include <mutex>

namespace {

/// The settings library takes any bytes for an INI file; of one that is something else, no line is a group or a key.
struct IniCheck
{
    QString notIni;     ///< why it is none; empty when it is
    QStringList strays; ///< lines that it leaves out
};

IniCheck check(const QString& path)
{
    if (HomeFiles::isNoFile(path))
        return {QStringLiteral("not a regular file"), {}};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > HomeFiles::maxFileBytes)
        return {QStringLiteral("larger than %1 bytes").arg(HomeFiles::maxFileBytes), {}};
    IniCheck found;
    int good = 0;
    for (int number = 1; !file.atEnd(); ++number) {
        QByteArray line = file.readLine().trimmed();
        if (number == 1 && line.startsWith("\xEF\xBB\xBF"))
            line = line.mid(3).trimmed();
        if (line.contains('\0'))
            return {QStringLiteral("line %1 is no text").arg(number), {}};
        const bool group = line.startsWith('[') && line.endsWith(']');
        if (group || line.contains('='))
            ++good;
        else if (!line.isEmpty() && !line.startsWith(';') && !line.startsWith('#'))
            found.strays << QStringLiteral("%1, line %2: neither a group nor a key, left out").arg(path).arg(number);
    }
    if (good == 0 && !found.strays.isEmpty())
        return {QStringLiteral("no line is a group or a key"), {}};
    return found;
}

} // namespace

IniFile::IniFile(const QString& path)
    : m_path(path)
{
    const IniCheck found = check(path);
    m_strays = found.strays;
    if (!found.notIni.isEmpty()) {
        const QString aside = HomeFiles::keepAside(path);
        m_problem = QStringLiteral("%1: %2; kept as %3").arg(path, found.notIni, aside);
        qWarning("%s", qUtf8Printable(m_problem));
    }
    m_settings = std::make_unique<QSettings>(m_path, QSettings::IniFormat);
    m_settings->setIniCodec("UTF-8");
}

bool IniFile::commit(bool loses)
{
    QDir().mkpath(QFileInfo(m_path).path());
    if (loses || !m_strays.isEmpty()) {
        const QString aside = HomeFiles::copyAside(m_path);
        if (aside.isEmpty()) {
            qWarning("%s: cannot be kept under another name, and is not written", qUtf8Printable(m_path));
            return false;
        }
        qWarning("%s: kept as %s", qUtf8Printable(m_path), qUtf8Printable(aside));
    }
    m_settings->sync();
    const bool written = m_settings->status() != QSettings::AccessError; // a stray line is an error of format
    if (!written)
        qWarning("%s: cannot be written", qUtf8Printable(m_path));
    return written;
}

/// The settings library takes a text with commas for a list.
QString IniReadVisitor::textOf(const ConfigKey& key) const
{
    const QVariant value = m_file.value(key);
    return value.type() == QVariant::StringList ? value.toStringList().join(QLatin1Char(',')) : value.toString();
}

void IniReadVisitor::notConverted(const ConfigKey& key, const char* wanted)
{
    m_problems << QStringLiteral("%1: %2=%3 is not %4, its default is used")
                      .arg(m_file.fileName(), key, textOf(key), QLatin1String(wanted));
}

void IniReadVisitor::field(const ConfigKey& key, QString& value, const QString& fallback)
{
    value = m_file.contains(key) ? textOf(key) : fallback;
}

/// Settings written by hand have capitals, blanks, or 1 and 0.
void IniReadVisitor::field(const ConfigKey& key, bool& value, bool fallback)
{
    const QString text = textOf(key).trimmed().toLower();
    const bool yes = text == QLatin1String("true") || text == QLatin1String("1");
    const bool no = text == QLatin1String("false") || text == QLatin1String("0");
    value = yes || (!no && fallback);
    if (!yes && !no && m_file.contains(key))
        notConverted(key, "true or false");
}

void IniReadVisitor::field(const ConfigKey& key, int& value, int fallback)
{
    bool good = false;
    const int number = textOf(key).toInt(&good); // a variant's own conversion would wrap a large one
    value = good ? number : fallback;
    if (!good && m_file.contains(key))
        notConverted(key, "a whole number of 32 bits");
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
    QThreadPool::globalInstance()->start(QRunnable::create([path = platform::inHome(QStringLiteral("/showImg.ini"))] {
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
