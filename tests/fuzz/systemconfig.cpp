#include "Harness.h"
#include "config/IniFile.h"
#include "config/ksSysConfig.h"

#include <QFile>

namespace {

QByteArray textOf(ksSysConfig& config)
{
    JsonWriteVisitor writer;
    config.visit(writer);
    return writer.text();
}

/// What is no INI file is kept aside, and would fill the folder here.
void removeKept(const QString& problem)
{
    const QString aside = problem.section(QStringLiteral("kept as "), 1);
    fuzz::require(problem.isEmpty() || QFile::remove(aside), "a file that is none is kept aside");
}

} // namespace

FUZZ_TARGET(systemconfig)
{
    ksSysConfig read;
    read.filePath = fuzz::homeFile("/user/systemConfig.ini", bytes);
    QString problem;
    fuzz::require(read.load(&problem) == problem.isEmpty(), "a file that is refused has its reason");
    removeKept(problem);
    const QByteArray text = textOf(read);
    if (!fuzz::isChosen(bytes))
        return;
    read.filePath = fuzz::home() + QStringLiteral("/user/again.ini");
    QFile::remove(read.filePath);
    fuzz::require(read.save(), "settings can be saved");
    ksSysConfig again;
    again.filePath = read.filePath;
    again.load();
    fuzz::require(textOf(again) == text, "what is saved is read back as it was");
}
