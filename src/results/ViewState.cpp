#include "results/ViewState.h"

#include <QFileInfo>
#include <QRunnable>
#include <QSettings>
#include <QThreadPool>

#include <mutex>

namespace {

QString stateFile(const QString& home)
{
    return home + QStringLiteral("/user/results.ini");
}

} // namespace

QByteArray ViewState::load(const QString& home, const QString& name)
{
    return QSettings(stateFile(home), QSettings::IniFormat).value(name).toByteArray();
}

void ViewState::keep(const QString& home, const QString& name, const QByteArray& state)
{
    if (home.isEmpty())
        return;
    QThreadPool::globalInstance()->start(QRunnable::create([path = stateFile(home), name, state] {
        static std::mutex fileMutex; // one writer reads and replaces the file at a time
        const std::lock_guard<std::mutex> lock(fileMutex);
        if (!QFileInfo(QFileInfo(path).path()).isWritable())
            return;
        QSettings file(path, QSettings::IniFormat);
        if (file.value(name).toByteArray() != state)
            file.setValue(name, state);
    }));
}
