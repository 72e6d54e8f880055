#include "common/AuditChange.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

namespace {

using Values = QMap<QString, QString>;

Values flat(const QJsonObject& object, const QString& place = {})
{
    Values values;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it->isObject())
            values.insert(flat(it->toObject(), place + it.key() + QLatin1Char('/')));
        else
            values.insert(place + it.key(), it->toVariant().toString());
    }
    return values;
}

} // namespace

AuditChanges jsonChanges(const QByteArray& before, const QByteArray& after)
{
    const Values old = flat(QJsonDocument::fromJson(before).object());
    const Values now = flat(QJsonDocument::fromJson(after).object());
    Values all = old;
    all.insert(now);
    AuditChanges changes;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (old.value(it.key()) != now.value(it.key()))
            changes.append({it.key(), old.value(it.key()), now.value(it.key())});
    }
    return changes;
}
