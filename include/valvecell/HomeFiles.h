#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>
#include <QThread>

/// How the program and its modules keep small files in the home, so that no file is ever half written and no file that
/// a person spoiled by hand is lost. Any thread, as long as one thread at a time uses a file.
namespace HomeFiles {

/// The home while nobody names one: the application's directory, or, of a program that a package installed below /usr
/// where no user may write, "valvecell" in the user's folder for data.
inline QString defaultHome()
{
    const QString folder = QCoreApplication::applicationDirPath();
    if (!folder.startsWith(QLatin1String("/usr/")))
        return folder;
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/valvecell");
}

/// The one directory below which all files lie: the environment variable VALVECELL_HOME names it, without it it is
/// defaultHome(). Absolute, forward slashes, no separator at the end. Modules keep theirs in "user/". A relative name
/// counts from the working directory of the moment: see fixHome().
inline QString home()
{
    const QString named = qEnvironmentVariable("VALVECELL_HOME");
    return named.isEmpty() ? defaultHome() : QDir(named).absolutePath();
}

/// Names the home for this process and those it starts. Main thread, at the start.
inline void setHome(const QString& folder)
{
#ifdef Q_OS_WIN
    // Qt's own call takes the code page of the machine, which lacks most of the world's characters.
    _wputenv_s(L"VALVECELL_HOME", reinterpret_cast<const wchar_t*>(folder.utf16()));
#else
    qputenv("VALVECELL_HOME", QFile::encodeName(folder));
#endif
}

/// Makes the home absolute once and for all, before anybody changes the working directory, and makes the folder of one
/// that nobody named. Main thread, at the start.
inline void fixHome()
{
    if (qEnvironmentVariableIsSet("VALVECELL_HOME"))
        setHome(home());
    else
        QDir().mkpath(home());
}

/// Whether a path leads to something that is no file, such as a pipe or a device: opening that may wait for ever.
inline bool isNoFile(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

/// Larger than any file that is meant; a larger one is not read.
constexpr qint64 maxFileBytes = 64 * 1024 * 1024;

struct JsonRead
{
    enum State { Missing, Good, Damaged };
    State state = Missing;
    QJsonObject object; ///< empty unless Good
    QString error;      ///< file, place and reason; empty when Good
};

/// Reads a file that holds one JSON object. Missing: no such file. Damaged: it cannot be read, is empty, is no JSON or
/// is no object.
inline JsonRead readJson(const QString& path)
{
    QFile file(path);
    if (!file.exists())
        return {JsonRead::Missing, {}, QStringLiteral("%1: no such file").arg(path)};
    if (isNoFile(path))
        return {JsonRead::Damaged, {}, QStringLiteral("%1: not a regular file").arg(path)};
    if (!file.open(QIODevice::ReadOnly))
        return {JsonRead::Damaged, {}, QStringLiteral("%1: %2").arg(path, file.errorString())};
    if (file.size() > maxFileBytes)
        return {JsonRead::Damaged, {}, QStringLiteral("%1: larger than %2 bytes").arg(path).arg(maxFileBytes)};
    const QByteArray text = file.readAll();
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(text, &parse);
    if (parse.error != QJsonParseError::NoError) {
        const int line = text.left(parse.offset).count('\n') + 1;
        return {JsonRead::Damaged, {}, QStringLiteral("%1, line %2: %3").arg(path).arg(line).arg(parse.errorString())};
    }
    if (!document.isObject())
        return {JsonRead::Damaged, {}, QStringLiteral("%1: the top level is not an object").arg(path)};
    return {JsonRead::Good, document.object(), {}};
}

/// A free name beside a file that holds a word for the reason and the time; empty when there is none.
inline QString asideName(const QString& path, const QString& word)
{
    const QString stem = path + QLatin1Char('.') + word + QLatin1Char('-') +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    for (int i = 0; i < 100; ++i) {
        const QString aside = i == 0 ? stem : QStringLiteral("%1-%2").arg(stem).arg(i);
        if (!QFile::exists(aside))
            return aside;
    }
    return {};
}

/// Renames a file to such a name, and returns that name; empty when it could not.
inline QString keepAside(const QString& path, const QString& word = QStringLiteral("damaged"))
{
    const QString aside = asideName(path, word);
    return !aside.isEmpty() && QFile::rename(path, aside) ? aside : QString();
}

/// Copies a file to such a name, before something of it is lost by writing it anew.
inline QString copyAside(const QString& path)
{
    const QString aside = asideName(path, QStringLiteral("damaged"));
    return !aside.isEmpty() && QFile::copy(path, aside) ? aside : QString();
}

/// Replaces a file's content in one step: after a power failure it holds the old or the new content, whole. Windows
/// replaces no file that somebody has open: it is tried again for a tenth of a second, as virus scanners and other
/// readers are done soon.
inline bool writeFile(const QString& path, const QByteArray& content, QString* error)
{
#ifdef Q_OS_WIN
    constexpr int triesAfterTheFirst = 5;
#else
    constexpr int triesAfterTheFirst = 0;
#endif
    constexpr unsigned long msBetweenTries = 20;
    QString reason;
    for (int tries = 0; tries <= triesAfterTheFirst; ++tries) {
        QSaveFile file(path);
        // Only flush() reports a full disk when the content fits into the buffer; commit() would replace the file by
        // nothing.
        if (QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
            file.write(content) == content.size() && file.flush() && file.commit())
            return true;
        reason = QStringLiteral("%1: %2").arg(path, file.errorString());
        if (tries < triesAfterTheFirst)
            QThread::msleep(msBetweenTries);
    }
    if (error)
        *error = reason;
    return false;
}

/// The mark beside a file that keeps people out: it says that there was one.
inline QString markOf(const QString& path)
{
    return path + QStringLiteral(".present");
}

/// Leaves the mark, unless it is there. Without it the file is as good, so a failure is none.
inline void markPresent(const QString& path)
{
    if (!QFile::exists(markOf(path)))
        writeFile(markOf(path), "Without this file, the loss of the one beside it is taken for a first start.\n",
                  nullptr);
}

/// Whether a marked file was deleted.
inline bool isGone(const QString& path)
{
    return !QFile::exists(path) && QFile::exists(markOf(path));
}

/// As writeFile(), for a JSON file: a present file that does not parse is kept aside first, never overwritten. So is a
/// copy of one of which the new content `loses` something.
inline bool writeJsonText(const QString& path, const QByteArray& json, QString* error, bool loses = false)
{
    const bool damaged = readJson(path).state == JsonRead::Damaged && (QFileInfo(path).size() > 0 || isNoFile(path));
    const QString aside = damaged ? keepAside(path) : loses ? copyAside(path) : QString();
    if ((damaged || loses) && aside.isEmpty()) {
        if (error)
            *error = QStringLiteral("%1: damaged, and cannot be kept under another name").arg(path);
        return false;
    }
    if (!aside.isEmpty())
        qWarning("%s: kept as %s", qUtf8Printable(path), qUtf8Printable(aside));
    return writeFile(path, json, error);
}

inline bool writeJson(const QString& path, const QJsonObject& object, QString* error, bool loses = false)
{
    return writeJsonText(path, QJsonDocument(object).toJson(QJsonDocument::Indented), error, loses);
}

} // namespace HomeFiles
