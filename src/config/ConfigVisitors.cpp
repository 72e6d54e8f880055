#include "config/ConfigVisitors.h"

#include "common/JsonText.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace {

/// The text that stands for a number which JSON cannot carry.
QString nonFiniteText(double value)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
}

/// The texts that JsonWriteVisitor writes for numbers that JSON has no form for.
bool readNonFinite(const QString& text, double& value)
{
    if (text == QLatin1String("nan"))
        value = std::numeric_limits<double>::quiet_NaN();
    else if (text == QLatin1String("inf"))
        value = std::numeric_limits<double>::infinity();
    else if (text == QLatin1String("-inf"))
        value = -std::numeric_limits<double>::infinity();
    else
        return false;
    return true;
}

QByteArray quoted(const QString& text)
{
    return jsonText(text);
}

} // namespace

QJsonValue JsonReadVisitor::take(const ConfigKey& key)
{
    m_asked.insert(key);
    return m_object.value(key);
}

QStringList JsonReadVisitor::unknown() const
{
    QStringList unknown = m_unknown;
    const QStringList keys = m_object.keys();
    for (const QString& key : keys) {
        if (!m_asked.contains(key))
            unknown << QStringLiteral("%1: \"%2\" is not known here").arg(m_place, key);
    }
    return unknown;
}

void JsonReadVisitor::wrongType(const ConfigKey& key, const char* wanted)
{
    const QJsonValue value = m_object.value(key);
    m_wrong.insert(key, value);
    m_problems << QStringLiteral("%1: \"%2\" is not %3, its default is used: %4")
                      .arg(m_place, key, QLatin1String(wanted), QString::fromUtf8(jsonText(value).left(80)));
}

void JsonReadVisitor::field(const ConfigKey& key, QString& value, const QString& fallback)
{
    const QJsonValue json = take(key);
    value = json.toString(fallback);
    if (!json.isUndefined() && !json.isString())
        wrongType(key, "a text");
}

void JsonReadVisitor::field(const ConfigKey& key, bool& value, bool fallback)
{
    const QJsonValue json = take(key);
    value = json.toBool(fallback);
    if (!json.isUndefined() && !json.isBool())
        wrongType(key, "true or false");
}

void JsonReadVisitor::field(const ConfigKey& key, int& value, int fallback)
{
    const QJsonValue json = take(key);
    value = json.toInt(fallback);
    if (!json.isUndefined() && (!json.isDouble() || json.toDouble() != value))
        wrongType(key, "a whole number of 32 bits");
}

void JsonReadVisitor::field(const ConfigKey& key, double& value, double fallback)
{
    const QJsonValue json = take(key);
    if (json.isString() && readNonFinite(json.toString(), value))
        return;
    value = json.toDouble(fallback);
    if (!json.isUndefined() && !json.isDouble())
        wrongType(key, "a number");
}

QJsonObject JsonReadVisitor::nestedObject(const ConfigKey& key)
{
    const QJsonValue json = take(key);
    if (!json.isUndefined() && !json.isObject()) {
        m_wrong.insert(key, json);
        m_problems << QStringLiteral("%1: \"%2\" is not an object, its values stay").arg(m_place, key);
    }
    return json.toObject();
}

void JsonWriteVisitor::append(const ConfigKey& key, const QByteArray& json)
{
    if (!m_lines.isEmpty())
        m_lines += ",\n";
    m_lines += m_indent + quoted(key) + ": " + json;
}

void JsonWriteVisitor::appendField(const ConfigKey& key, const QByteArray& json)
{
    append(key, m_kept.contains(key) ? jsonText(m_kept.value(key)) : json);
}

void JsonWriteVisitor::appendObject(const ConfigKey& key, const QByteArray& json)
{
    const QJsonValue kept = m_kept.value(key);
    append(key, kept.isUndefined() || kept.isObject() ? json : jsonText(kept));
}

void JsonWriteVisitor::field(const ConfigKey& key, const QString& value, const QString&)
{
    appendField(key, quoted(value));
}

void JsonWriteVisitor::field(const ConfigKey& key, bool value, bool)
{
    appendField(key, value ? "true" : "false");
}

void JsonWriteVisitor::field(const ConfigKey& key, int value, int)
{
    appendField(key, QByteArray::number(value));
}

void JsonWriteVisitor::field(const ConfigKey& key, double value, double)
{
    if (std::isfinite(value))
        appendField(key, QLocale::c().toString(value, 'g', QLocale::FloatingPointShortest).toLatin1());
    else
        appendField(key, quoted(nonFiniteText(value)));
}

QByteArray JsonWriteVisitor::text() const
{
    return "{\n" + m_lines + '\n' + m_indent.chopped(4) + '}';
}
