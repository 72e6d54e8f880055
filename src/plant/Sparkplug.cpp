#include "plant/Sparkplug.h"

#include <QCoreApplication>

#include <sparkplug.pb.h>

namespace Sparkplug {
namespace {

using Message = valvecell::sparkplug::Metric;

std::string bytesOf(const QString& text)
{
    return text.toStdString();
}

QString textOf(const std::string& bytes)
{
    return QString::fromUtf8(bytes.data(), int(bytes.size()));
}

void putValue(Message& out, const Metric& metric)
{
    switch (metric.type) {
    case Type::Int8:
    case Type::Int16:
    case Type::Int32:
        return out.set_int_value(quint32(metric.value.toInt()));
    case Type::UInt8:
    case Type::UInt16:
    case Type::UInt32:
        return out.set_int_value(metric.value.toUInt());
    case Type::Int64:
        return out.set_long_value(quint64(metric.value.toLongLong()));
    case Type::UInt64:
    case Type::DateTime:
        return out.set_long_value(metric.value.toULongLong());
    case Type::Float:
        return out.set_float_value(metric.value.toFloat());
    case Type::Double:
        return out.set_double_value(metric.value.toDouble());
    case Type::Boolean:
        return out.set_boolean_value(metric.value.toBool());
    case Type::Bytes:
        return out.set_bytes_value(metric.value.toByteArray().toStdString());
    case Type::String:
    case Type::Text:
    case Type::Uuid:
        return out.set_string_value(bytesOf(metric.value.toString()));
    }
}

qlonglong signedOf(const Message& in, Type type)
{
    switch (type) {
    case Type::Int8:
        return qint8(in.int_value());
    case Type::Int16:
        return qint16(in.int_value());
    case Type::Int32:
        return qint32(in.int_value());
    default:
        return qlonglong(in.long_value());
    }
}

/// Of the kind that the type has, as the value that was sent gives it; not valid when the two do not go together.
QVariant valueOf(const Message& in, Type type)
{
    const auto kind = in.value_case();
    switch (type) {
    case Type::Int8:
    case Type::Int16:
    case Type::Int32:
        return kind == Message::kIntValue ? QVariant(signedOf(in, type)) : QVariant();
    case Type::UInt8:
    case Type::UInt16:
    case Type::UInt32:
        return kind == Message::kIntValue ? QVariant(qulonglong(in.int_value())) : QVariant();
    case Type::Int64:
        return kind == Message::kLongValue ? QVariant(signedOf(in, type)) : QVariant();
    case Type::UInt64:
    case Type::DateTime:
        if (kind == Message::kIntValue) // some senders take the smaller field for what fits into it
            return QVariant(qulonglong(in.int_value()));
        return kind == Message::kLongValue ? QVariant(qulonglong(in.long_value())) : QVariant();
    case Type::Float:
        return kind == Message::kFloatValue ? QVariant(double(in.float_value())) : QVariant();
    case Type::Double:
        return kind == Message::kDoubleValue ? QVariant(in.double_value()) : QVariant();
    case Type::Boolean:
        return kind == Message::kBooleanValue ? QVariant(in.boolean_value()) : QVariant();
    case Type::Bytes:
        return kind == Message::kBytesValue ? QVariant(QByteArray::fromStdString(in.bytes_value())) : QVariant();
    case Type::String:
    case Type::Text:
    case Type::Uuid:
        return kind == Message::kStringValue ? QVariant(textOf(in.string_value())) : QVariant();
    }
    return {};
}

bool isKnown(quint32 type)
{
    return (type >= quint32(Type::Int8) && type <= quint32(Type::Uuid)) || type == quint32(Type::Bytes);
}

/// False when its value does not go with its type.
bool takeMetric(const Message& in, Metric& metric)
{
    metric = {textOf(in.name()), Type(in.datatype()), {}};
    if (in.is_null())
        return true;
    metric.value = valueOf(in, metric.type);
    return metric.value.isValid();
}

QString say(const char* text)
{
    return QCoreApplication::translate("Plant", text);
}

} // namespace

std::optional<QVariant> Payload::value(const QString& name, Type type) const
{
    for (const Metric& metric : metrics) {
        if (metric.name == name && metric.type == type && metric.value.isValid())
            return metric.value;
    }
    return {};
}

QByteArray encode(const Payload& payload)
{
    valvecell::sparkplug::Payload message;
    message.set_timestamp(quint64(payload.timestamp));
    if (payload.seq >= 0)
        message.set_seq(quint64(payload.seq));
    for (const Metric& metric : payload.metrics) {
        Message& out = *message.add_metrics();
        out.set_name(bytesOf(metric.name));
        out.set_timestamp(quint64(payload.timestamp));
        out.set_datatype(quint32(metric.type));
        if (metric.value.isValid())
            putValue(out, metric);
        else
            out.set_is_null(true);
    }
    return QByteArray::fromStdString(message.SerializeAsString());
}

std::optional<Payload> decode(const QByteArray& bytes, QString* error)
{
    valvecell::sparkplug::Payload message;
    if (!message.ParseFromArray(bytes.constData(), bytes.size())) {
        *error =
            say(QT_TRANSLATE_NOOP("Plant", "不是 Sparkplug B 报文（%1 字节），请检查发送方的版本")).arg(bytes.size());
        return {};
    }
    Payload payload;
    payload.timestamp = qint64(message.timestamp());
    payload.seq = message.has_seq() ? int(message.seq() & 0xff) : -1;
    for (int i = 0; i < message.metrics_size(); ++i) {
        const Message& in = message.metrics(i);
        if (!isKnown(in.datatype()))
            continue;
        Metric metric;
        if (!takeMetric(in, metric)) {
            *error = say(QT_TRANSLATE_NOOP("Plant", "metrics[%1]（%2）：值与数据类型 %3 不符"))
                         .arg(i)
                         .arg(metric.name)
                         .arg(in.datatype());
            return {};
        }
        payload.metrics.append(metric);
    }
    return payload;
}

} // namespace Sparkplug
