#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Two visitors over the fields of a configuration: one reads them from a JSON object, one writes them as JSON text
/// in the order of the visit (a QJsonObject would sort its keys).

class JsonReadVisitor
{
public:
    JsonReadVisitor(const QJsonObject& object, QString place)
        : m_object(object)
        , m_place(std::move(place))
    {
    }

    /// A key that is absent, or of a wrong type, gives the fallback; the latter is a problem.
    void field(const char* key, QString& value, const QString& fallback);
    void field(const char* key, bool& value, bool fallback);
    void field(const char* key, int& value, int fallback);
    void field(const char* key, double& value, double fallback);

    /// Visits a nested object, unless it is absent or empty.
    template <typename Visit>
    void object(const char* key, Visit visit)
    {
        const QJsonObject nested = nestedObject(key);
        if (nested.isEmpty())
            return;
        JsonReadVisitor inner(nested, m_place + QLatin1Char('/') + QLatin1String(key));
        visit(inner);
        m_problems += inner.problems();
    }

    /// Keys that hold a wrong type, each with its place.
    const QStringList& problems() const { return m_problems; }

private:
    QJsonObject nestedObject(const char* key);
    void wrongType(const char* key, const char* wanted);

    QJsonObject m_object;
    QString m_place;
    QStringList m_problems;
};

class JsonWriteVisitor
{
public:
    explicit JsonWriteVisitor(int depth = 1)
        : m_indent(4 * depth, ' ')
    {
    }

    /// The fallback is the reader's: every key is written.
    void field(const char* key, const QString& value, const QString&);
    void field(const char* key, bool value, bool);
    void field(const char* key, int value, int);
    void field(const char* key, double value, double);

    template <typename Visit>
    void object(const char* key, Visit visit)
    {
        JsonWriteVisitor inner(m_indent.size() / 4 + 1);
        visit(inner);
        append(key, inner.text());
    }

    /// The whole object, braces included.
    QByteArray text() const;

private:
    void append(const char* key, const QByteArray& json);

    QByteArray m_indent;
    QByteArray m_lines;
};
