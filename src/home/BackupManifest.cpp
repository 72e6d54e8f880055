#include "home/BackupManifest.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <numeric>

namespace {

struct ManifestTr
{
    Q_DECLARE_TR_FUNCTIONS(Backup)
};

QJsonObject jsonOf(const BackupManifest::File& file)
{
    return {{"path", file.path}, {"size", file.size}, {"sha256", QString::fromLatin1(file.sha256)}};
}

} // namespace

qint64 BackupManifest::bytes() const
{
    return std::accumulate(files.begin(), files.end(), qint64(0),
                           [](qint64 sum, const File& file) { return sum + file.size; });
}

QByteArray BackupManifest::toJson() const
{
    QJsonArray list;
    for (const File& file : files)
        list.append(jsonOf(file));
    return QJsonDocument({{"format", format},
                          {"program", program},
                          {"machine", machine},
                          {"made", made.toUTC().toString(Qt::ISODate)},
                          {"home_version", homeVersion},
                          {"parts", QJsonArray::fromStringList(HomeParts::names(parts))},
                          {"files", list}})
        .toJson(QJsonDocument::Compact);
}

bool BackupManifest::read(const QByteArray& json, QString* error)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const int found = object["format"].toInt();
    if (found != format) {
        *error = found > format
                     ? ManifestTr::tr("备份由更新的程序版本建立（格式%1，本程序为%2）").arg(found).arg(format)
                     : ManifestTr::tr("备份的目录无法读取");
        return false;
    }
    program = object["program"].toString();
    machine = object["machine"].toString();
    made = QDateTime::fromString(object["made"].toString(), Qt::ISODate);
    homeVersion = object["home_version"].toInt();
    parts = HomeParts::parse(object["parts"].toVariant().toStringList()).value_or(HomeParts::Set());
    QSet<QString> seen;
    const QJsonArray list = object["files"].toArray();
    for (const QJsonValue& value : list) {
        const QJsonObject file = value.toObject();
        files.append({file["path"].toString(), qint64(file["size"].toDouble()), file["sha256"].toString().toLatin1()});
        if (!HomeParts::isPlain(files.last().path) || files.last().size < 0 || seen.contains(files.last().path)) {
            *error = ManifestTr::tr("备份的目录中有不允许的路径：%1").arg(files.last().path);
            return false;
        }
        seen.insert(files.last().path);
    }
    return true;
}
