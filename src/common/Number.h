#pragma once

#include <QVariant>

#include <cmath>

/// Whether a value of a module or a file is a finite number. A text or a truth value is none: a variant would take
/// "forty-two" for 0, and true for 1.
inline bool isNumber(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return std::isfinite(value.toDouble());
    default:
        return false;
    }
}
