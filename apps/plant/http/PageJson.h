#pragma once

#include "Health.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <string>

/// What the page gets that is not from the database.
namespace PageJson {

/// {"broker": {"kind": "away", "text": "…"}}; {} when all is well.
inline std::string health(const Health& health)
{
    QJsonObject object;
    const QMap<QString, Health::Trouble> troubles = health.troubles();
    for (auto trouble = troubles.cbegin(); trouble != troubles.cend(); ++trouble)
        object.insert(trouble.key(), QJsonObject{{"kind", trouble->kind}, {"text", trouble->text}});
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

} // namespace PageJson
