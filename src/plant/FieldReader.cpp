#include "plant/FieldReader.h"

#include "plant/PlantTopics.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>

#include <cmath>
#include <limits>

namespace {

QString sayField(const char* text)
{
    return QCoreApplication::translate("Plant", text);
}

/// A value for a message, short.
QString shown(const QJsonValue& value)
{
    if (value.isUndefined())
        return sayField(QT_TRANSLATE_NOOP("Plant", "缺失"));
    if (value.isObject())
        return QStringLiteral("{…}");
    if (value.isArray())
        return QStringLiteral("[…]");
    if (value.isString())
        return QLatin1Char('"') + value.toString().left(40) + QLatin1Char('"');
    return value.isNull() ? QStringLiteral("null") : value.toVariant().toString();
}

} // namespace

FieldReader::FieldReader(const QJsonObject& object, QString place, QString* error)
    : m_object(object)
    , m_place(std::move(place))
    , m_error(error)
{
}

void FieldReader::fail(const char* key, const QString& why)
{
    if (m_error->isEmpty())
        *m_error = sayField(QT_TRANSLATE_NOOP("Plant", "%1：%2")).arg(m_place + QLatin1String(key), why);
}

void FieldReader::expect(const char* key, const QString& wanted)
{
    fail(key, sayField(QT_TRANSLATE_NOOP("Plant", "应为%1，实为 %2")).arg(wanted, shown(value(key))));
}

QString FieldReader::text(const char* key, int longest)
{
    const QJsonValue found = value(key);
    if (!found.isString() || found.toString().size() > longest)
        expect(key, sayField(QT_TRANSLATE_NOOP("Plant", "最多 %1 个字符的文本")).arg(longest));
    return found.toString();
}

QString FieldReader::word(const char* key, const QStringList& allowed)
{
    const QString found = value(key).toString();
    if (!value(key).isString() || !allowed.contains(found))
        expect(key, sayField(QT_TRANSLATE_NOOP("Plant", " %1 之一")).arg(allowed.join(QStringLiteral(", "))));
    return found;
}

QString FieldReader::uuid(const char* key)
{
    const QString found = value(key).toString();
    if (QUuid(found).toString(QUuid::WithoutBraces) != found)
        expect(key, sayField(QT_TRANSLATE_NOOP("Plant", "小写、无括号的 UUID")));
    return found;
}

qint64 FieldReader::integer(const char* key, qint64 least, qint64 most)
{
    const double found = value(key).toDouble(std::numeric_limits<double>::quiet_NaN());
    if (!(found >= double(least) && found <= double(most)) || found != std::floor(found)) {
        expect(key, sayField(QT_TRANSLATE_NOOP("Plant", " %1 至 %2 的整数")).arg(least).arg(most));
        return 0;
    }
    return qint64(found);
}

std::optional<int> FieldReader::integerOrNone(const char* key)
{
    if (value(key).isNull() || value(key).isUndefined())
        return {};
    return int(integer(key, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

std::optional<double> FieldReader::number(const char* key)
{
    if (value(key).isNull() || value(key).isUndefined())
        return {};
    if (!value(key).isDouble())
        expect(key, sayField(QT_TRANSLATE_NOOP("Plant", "数字")));
    return value(key).toDouble();
}

bool FieldReader::flag(const char* key)
{
    if (!value(key).isBool() && !value(key).isUndefined())
        expect(key, QStringLiteral(" true / false"));
    return value(key).toBool();
}

qint64 FieldReader::time(const char* key, const char* zone)
{
    const QString found = value(key).toString();
    const QString end = QLatin1String(zone);
    const QString digits = found.endsWith(end) ? found.left(found.size() - end.size()) : QString();
    QDateTime time = QDateTime::fromString(digits, Qt::ISODateWithMs);
    time.setTimeSpec(Qt::UTC);
    if (!time.isValid() || digits.size() != 23)
        expect(key,
               sayField(QT_TRANSLATE_NOOP("Plant", "时间 %1")).arg(QStringLiteral("2026-11-22T10:15:30.123") + end));
    return time.toMSecsSinceEpoch();
}

QJsonArray FieldReader::list(const char* key, int most)
{
    const QJsonArray found = value(key).toArray();
    if (!value(key).isArray() || found.size() > most)
        expect(key, sayField(QT_TRANSLATE_NOOP("Plant", "最多 %1 项的数组")).arg(most));
    return found;
}

QJsonObject FieldReader::object(const char* key)
{
    if (!value(key).isObject())
        expect(key, sayField(QT_TRANSLATE_NOOP("Plant", "对象")));
    return value(key).toObject();
}

std::optional<QJsonObject> FieldReader::message(const QByteArray& json, QString* error)
{
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parse);
    if (!document.isObject()) {
        *error = parse.error == QJsonParseError::NoError
                     ? sayField(QT_TRANSLATE_NOOP("Plant", "应为 JSON 对象"))
                     : sayField(QT_TRANSLATE_NOOP("Plant", "不是 JSON（第 %1 字节：%2）"))
                           .arg(parse.offset)
                           .arg(parse.errorString());
        return {};
    }
    FieldReader fields(document.object(), {}, error);
    const qint64 version = fields.integer("v", 1, 1000000);
    if (fields.ok() && version > PlantTopics::schemaVersion)
        fields.fail("v", sayField(QT_TRANSLATE_NOOP("Plant", "版本 %1 比本程序所知的 %2 新，请升级本程序"))
                             .arg(version)
                             .arg(PlantTopics::schemaVersion));
    if (!fields.ok())
        return {};
    return document.object();
}
