#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>

/// Takes fields out of a JSON object that a stranger wrote, and keeps in `error` what was wrong first, with its place.
/// After that, what it returns has no meaning.
class FieldReader
{
public:
    /// `place` stands before each field's name in messages: "rows[3]."; empty for the outermost.
    FieldReader(const QJsonObject& object, QString place, QString* error);

    bool ok() const { return m_error->isEmpty(); }
    void fail(const char* key, const QString& why);

    QString text(const char* key, int longest = 4096);
    /// One of `allowed`.
    QString word(const char* key, const QStringList& allowed);
    /// A UUID without braces.
    QString uuid(const char* key);
    qint64 integer(const char* key, qint64 least, qint64 most);
    /// Null or missing: none. The same of number().
    std::optional<int> integerOrNone(const char* key);
    std::optional<double> number(const char* key);
    bool flag(const char* key);
    /// Milliseconds since 1970 of an ISO time with milliseconds; `zone`: what has to stand at its end.
    qint64 time(const char* key, const char* zone);
    QJsonArray list(const char* key, int most);
    QJsonObject object(const char* key);

    /// The outermost object of a message of this schema; nothing when it is none, or of a newer version.
    static std::optional<QJsonObject> message(const QByteArray& json, QString* error);

private:
    QJsonValue value(const char* key) const { return m_object.value(QLatin1String(key)); }
    void expect(const char* key, const QString& wanted);

    const QJsonObject m_object;
    const QString m_place;
    QString* const m_error;
};
