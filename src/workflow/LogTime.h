#pragma once

#include <QString>
#include <QTime>

/// The present local time as log texts carry it.
inline QString logTime()
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss zzz"));
}

/// As logTime(), with the colon that opens a station's log line.
inline QString logTimeColon()
{
    return logTime() + QLatin1Char(':');
}
