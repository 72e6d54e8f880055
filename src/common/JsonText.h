#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>

/// A value of any kind as JSON, on one line; what JSON has no form for is null.
inline QByteArray jsonText(const QJsonValue& value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}
