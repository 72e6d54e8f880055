#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QSet>
#include <QString>
#include <QStringList>

/// A configuration names its fields once, in a template visit(Visitor&), with key, default and range:
///
///     visitor.field("pointCircle", pointCircle, 20);
///     visitor.setting("trigerFilter", trigerFilter, 1000, {0, 600000});
///     visitor.object("station1_4p", [&](auto& inner) { ... });
///
/// A field is a value of the file, a setting is one that the settings dialog edits, an object nests further fields. An
/// addition is a setting that an INI file lists only when it has been another than its default.
///
/// The constructor sets the defaults by a DefaultsVisitor, load() and save() use the visitors of their kind of file
/// (those of INI files are in IniFile.h), and the settings dialog reads keys and ranges here, too. So a new setting is
/// one line in visit(), one field in the dialog's .ui, which names the key in its property "settingKey", and one row in
/// the commissioning guides; tests report what is missing.

/// The key of a field: as it stands, with a number in place of "#", or in a group ("COM/" and "Port").
class ConfigKey
{
public:
    ConfigKey(const char* text)
        : m_text(QLatin1String(text))
    {
    }
    ConfigKey(const char* pattern, int number)
        : m_text(QString::fromLatin1(pattern).replace(QLatin1Char('#'), QString::number(number)))
    {
    }
    ConfigKey(const char* group, const char* name)
        : m_text(QLatin1String(group) + QLatin1String(name))
    {
    }
    operator const QString&() const { return m_text; }

private:
    QString m_text;
};

/// What may be typed for a whole number in the settings dialog; a file may hold any.
struct SettingRange
{
    int low = 0;
    int high = 0;
};

/// For visitors to which a setting is a field like any other.
template <typename Visitor>
class EveryField
{
public:
    void setting(const ConfigKey& key, QString& value, const QString& fallback) { self().field(key, value, fallback); }
    void setting(const ConfigKey& key, bool& value, bool fallback) { self().field(key, value, fallback); }
    void setting(const ConfigKey& key, int& value, int fallback, SettingRange) { self().field(key, value, fallback); }
    template <typename Value, typename Fallback>
    void addition(const ConfigKey& key, Value& value, const Fallback& fallback, SettingRange = {})
    {
        self().field(key, value, fallback);
    }

private:
    Visitor& self() { return static_cast<Visitor&>(*this); }
};

/// Gives every field its default.
class DefaultsVisitor : public EveryField<DefaultsVisitor>
{
public:
    template <typename Value, typename Fallback>
    void field(const ConfigKey&, Value& value, const Fallback& fallback)
    {
        value = fallback;
    }
    template <typename Visit>
    void object(const ConfigKey&, Visit visit)
    {
        visit(*this);
    }
};

/// Reads the fields from a JSON object.
class JsonReadVisitor : public EveryField<JsonReadVisitor>
{
public:
    JsonReadVisitor(const QJsonObject& object, QString place)
        : m_object(object)
        , m_place(std::move(place))
    {
    }

    /// A key that is absent, or of a wrong type, gives the fallback; the latter is a problem.
    void field(const ConfigKey& key, QString& value, const QString& fallback);
    void field(const ConfigKey& key, bool& value, bool fallback);
    void field(const ConfigKey& key, int& value, int fallback);
    void field(const ConfigKey& key, double& value, double fallback);

    /// Visits a nested object, unless it is absent or empty.
    template <typename Visit>
    void object(const ConfigKey& key, Visit visit)
    {
        const QJsonObject nested = nestedObject(key);
        if (nested.isEmpty())
            return;
        JsonReadVisitor inner(nested, m_place + QLatin1Char('/') + static_cast<const QString&>(key));
        visit(inner);
        m_problems += inner.problems();
        m_unknown += inner.unknown();
        if (!inner.wrongValues().isEmpty())
            m_wrong.insert(key, inner.wrongValues());
    }

    /// Keys that hold a wrong type, each with its place.
    const QStringList& problems() const { return m_problems; }
    /// Keys of the file that the visit did not ask for, each with its place; another version may know them.
    QStringList unknown() const;
    /// What stands at those keys; nested as the file is.
    const QJsonObject& wrongValues() const { return m_wrong; }

private:
    QJsonObject nestedObject(const ConfigKey& key);
    QJsonValue take(const ConfigKey& key);
    void wrongType(const ConfigKey& key, const char* wanted);

    QJsonObject m_object;
    QString m_place;
    QStringList m_problems;
    QSet<QString> m_asked;
    QStringList m_unknown;
    QJsonObject m_wrong;
};

/// Writes the fields as JSON text in the order of the visit (a QJsonObject would sort its keys).
class JsonWriteVisitor : public EveryField<JsonWriteVisitor>
{
public:
    /// `kept` are values that stand in the place of the fields', nested as the file is.
    explicit JsonWriteVisitor(const QJsonObject& kept = {}, int depth = 1)
        : m_kept(kept)
        , m_indent(4 * depth, ' ')
    {
    }

    /// The fallback is the reader's: every key is written.
    void field(const ConfigKey& key, const QString& value, const QString&);
    void field(const ConfigKey& key, bool value, bool);
    void field(const ConfigKey& key, int value, int);
    void field(const ConfigKey& key, double value, double);

    template <typename Visit>
    void object(const ConfigKey& key, Visit visit)
    {
        JsonWriteVisitor inner(m_kept.value(key).toObject(), m_indent.size() / 4 + 1);
        visit(inner);
        appendObject(key, inner.text());
    }

    /// The whole object, braces included.
    QByteArray text() const;

private:
    void append(const ConfigKey& key, const QByteArray& json);
    void appendField(const ConfigKey& key, const QByteArray& json);
    void appendObject(const ConfigKey& key, const QByteArray& json);

    QJsonObject m_kept;
    QByteArray m_indent;
    QByteArray m_lines;
};
