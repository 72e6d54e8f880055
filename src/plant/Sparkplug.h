#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

/// Payloads of Sparkplug B 3.0, as far as cells use them.
namespace Sparkplug {

/// The numbers are Sparkplug's. A value of the first eight is a qulonglong or qlonglong, a DateTime one of milliseconds
/// since 1970 UTC.
enum class Type : quint32 {
    Int8 = 1,
    Int16,
    Int32,
    Int64,
    UInt8,
    UInt16,
    UInt32,
    UInt64,
    Float,
    Double,
    Boolean,
    String,
    DateTime,
    Text,
    Uuid,
    Bytes = 17
};

struct Metric
{
    QString name;
    Type type = Type::String;
    QVariant value; ///< not valid: null
};

struct Payload
{
    qint64 timestamp = 0; ///< milliseconds since 1970 UTC
    int seq = 0;          ///< 0 to 255; -1 where there is none, as in a last will and a command
    QVector<Metric> metrics;

    /// The value of that metric when it is there, has that type and is not null.
    std::optional<QVariant> value(const QString& name, Type type) const;
    QString text(const QString& name) const { return value(name, Type::String).value_or(QVariant()).toString(); }
};

QByteArray encode(const Payload& payload);

/// Nothing when the bytes are no such payload; `error` then says what is wrong and where. Metrics of kinds that are not
/// listed above are left out.
std::optional<Payload> decode(const QByteArray& bytes, QString* error);

} // namespace Sparkplug
