#pragma once

#include <QString>

/// What a line of a station's log panel tells. The lines come as finished texts, which the workflow never translates,
/// so the kind is told by their fixed words.
enum class LogKind {
    Plain,
    Found,
    ModelSwitch,
    NotFound, ///< answered as not found, for whatever reason
    Refused,  ///< a trigger or a model that could not be taken
};

LogKind logKind(const QString& line);

inline bool isTrouble(LogKind kind)
{
    return kind == LogKind::NotFound || kind == LogKind::Refused;
}
