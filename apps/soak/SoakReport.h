#pragma once

#include "Balance.h"
#include "CellProcess.h"
#include "RecordsAudit.h"
#include "SoakOptions.h"

#include <QJsonObject>
#include <QMap>

/// Everything that a soak found out.
struct SoakReport
{
    /// Of one run of the program, from its first parts on.
    struct Memory
    {
        qint64 warmKiB = 0; ///< 0: it never came so far
        qint64 endKiB = 0;
        qint64 peakKiB = 0;
        int seconds = 0;
    };
    struct Stalls
    {
        int count = 0; ///< of the window's event loop, above 16 ms
        double longestMs = 0;
    };

    SoakOptions options;
    double seconds = 0;
    int sent = 0;
    Balance balance;
    RecordsAudit::Pictures pictures;
    int rows = 0;
    QMap<QString, int> faults;
    int crashes = 0; ///< the program ended by itself
    bool endedCleanly = false;
    QStringList damages;
    QVector<double> latencyMs;
    QVector<double> heartbeatMs;   ///< from the program's start to its first heartbeat
    QVector<double> firstAnswerMs; ///< and to its first answer
    Memory memory;                 ///< of the program's longest run
    Stalls stalls;
    QString problem; ///< why it ended early

    bool isGood() const;
    QStringList text() const;
    QJsonObject json() const;

    /// The stalls that the program wrote into its messages.
    static Stalls stallsIn(const QString& logFile);
};
