#include "results/export/ReportSettings.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

namespace {

const QString whenTexts[] = {QStringLiteral("off"), QStringLiteral("shift"), QStringLiteral("day")};

QString pathOf(const QString& home)
{
    return home + QStringLiteral("/user/reports.json");
}

} // namespace

ReportSettings ReportSettings::load(const QString& home, QString* error)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(pathOf(home));
    ReportSettings settings;
    if (read.state == HomeFiles::JsonRead::Damaged && error)
        *error = read.error;
    if (read.state != HomeFiles::JsonRead::Good)
        return settings;
    const QString when = read.object.value(QLatin1String("when")).toString();
    for (const When known : {Off, Shift, Day}) {
        if (when == whenTexts[known])
            settings.when = known;
    }
    settings.folder = read.object.value(QLatin1String("folder")).toString();
    settings.cell = read.object.value(QLatin1String("cell")).toString();
    const QJsonArray formats = read.object.value(QLatin1String("formats")).toArray();
    settings.pdf = formats.contains(QStringLiteral("pdf"));
    settings.xlsx = formats.contains(QStringLiteral("xlsx"));
    return settings;
}

QString ReportSettings::store(const QString& home) const
{
    QJsonArray formats;
    if (pdf)
        formats.append(QStringLiteral("pdf"));
    if (xlsx)
        formats.append(QStringLiteral("xlsx"));
    const QJsonObject object{{QStringLiteral("when"), whenTexts[when]},
                             {QStringLiteral("folder"), folder},
                             {QStringLiteral("cell"), cell},
                             {QStringLiteral("formats"), formats}};
    QString error;
    HomeFiles::writeJson(pathOf(home), object, &error);
    return error;
}

QString ReportSettings::problem() const
{
    if (when == Off)
        return {};
    if (!pdf && !xlsx)
        return tr("请至少选择一种报告格式");
    if (!folder.isEmpty() && !QFileInfo(folder).isDir())
        return tr("报告文件夹 %1 不存在").arg(folder);
    return {};
}

QString ReportSettings::folderIn(const QString& home) const
{
    return folder.isEmpty() ? home + QStringLiteral("/reports") : folder;
}
