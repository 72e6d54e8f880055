#include "SoakReport.h"

#include "PartReport.h"

#include <QFile>
#include <QJsonArray>

namespace {

QString line(const char* name, const QString& text)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(name), -16).arg(text);
}

QString times(const QVector<double>& values)
{
    const auto spread = spreadOf(values);
    return spread ? QStringLiteral("p50 %1  p99 %2  max %3 ms (%4)")
                        .arg(spread->p50, 0, 'f', 0)
                        .arg(spread->p99, 0, 'f', 0)
                        .arg(spread->max, 0, 'f', 0)
                        .arg(values.size())
                  : QStringLiteral("-");
}

QJsonValue timesJson(const QVector<double>& values)
{
    const auto spread = spreadOf(values);
    return spread ? QJsonObject{{"p50", spread->p50}, {"p99", spread->p99}, {"max", spread->max}} : QJsonValue();
}

QString mebibytes(qint64 kib)
{
    return QString::number(static_cast<double>(kib) / 1024, 'f', 1);
}

} // namespace

bool SoakReport::isGood() const
{
    return problem.isEmpty() && balance.isZero() && crashes == 0 && endedCleanly && damages.isEmpty() &&
           pictures.bad == 0 && pictures.unnamed == 0 && balance.answered > 0;
}

QStringList SoakReport::text() const
{
    const Balance& b = balance;
    QStringList happened;
    for (auto it = faults.begin(); it != faults.end(); ++it)
        happened << QStringLiteral("%1 %2").arg(it.value()).arg(it.key());
    QStringList text{
        line("soak", QStringLiteral("%1, %2 s, seed %3, %4 parts/s")
                         .arg(options.mode())
                         .arg(seconds, 0, 'f', 0)
                         .arg(options.seed)
                         .arg(options.rate)),
        line("faults", happened.isEmpty() ? QStringLiteral("none") : happened.join(QStringLiteral(", "))),
        line("triggers",
             QStringLiteral("%1 sent, %2 answered (%3 found, %4 nothing found, %5 refused), %6 in a cut line, "
                            "%7 in a killed program")
                 .arg(sent)
                 .arg(b.answered)
                 .arg(b.found)
                 .arg(b.nothing)
                 .arg(b.refused)
                 .arg(b.cut)
                 .arg(b.killed)),
        line("rows", QStringLiteral("%1: %2 of answers, %3 of triggers in a gap; %4 answers lost theirs to a kill")
                         .arg(rows)
                         .arg(b.rowsOfAnswers)
                         .arg(b.rowsOfGaps)
                         .arg(b.lostByKill)),
        line("pictures", QStringLiteral("%1 good, %2 lost to faults, %3 given up, %4 without a row; %5 source images")
                             .arg(pictures.good)
                             .arg(pictures.lostByFault)
                             .arg(pictures.givenUp)
                             .arg(pictures.withoutRow)
                             .arg(pictures.sourceImages)),
        line("balance",
             QStringLiteral("%1 unanswered, %2 answers to nobody, %3 without notice, %4 rows lost, %5 rows of "
                            "nobody, %6 pictures bad, %7 not named, %8 damaged, %9 crashes")
                 .arg(b.unanswered)
                 .arg(b.strays)
                 .arg(b.unnoticed)
                 .arg(b.lostRows)
                 .arg(b.strangeRows)
                 .arg(pictures.bad)
                 .arg(pictures.unnamed)
                 .arg(damages.size())
                 .arg(crashes)),
        line("answers after", times(latencyMs)),
        line("ready after",
             QStringLiteral("heartbeat %1; first answer %2").arg(times(heartbeatMs), times(firstAnswerMs))),
        line("memory", QStringLiteral("%1 MiB warm, %2 at the end, %3 at most, in %4 s")
                           .arg(mebibytes(memory.warmKiB), mebibytes(memory.endKiB), mebibytes(memory.peakKiB))
                           .arg(memory.seconds)),
        line("stalls", QStringLiteral("%1 above 16 ms, longest %2 ms").arg(stalls.count).arg(stalls.longestMs))};
    text += b.examples + pictures.examples + damages;
    if (!problem.isEmpty())
        text << problem;
    text << (isGood() ? QStringLiteral("good") : QStringLiteral("NOT GOOD"));
    return text;
}

QJsonObject SoakReport::json() const
{
    const Balance& b = balance;
    QJsonObject happened;
    for (auto it = faults.begin(); it != faults.end(); ++it)
        happened[it.key()] = it.value();
    return {{"mode", options.mode()},
            {"seconds", seconds},
            {"seed", QString::number(options.seed)},
            {"rate", options.rate},
            {"faults", happened},
            {"sent", sent},
            {"answered", b.answered},
            {"found", b.found},
            {"nothing_found", b.nothing},
            {"refused", b.refused},
            {"cut", b.cut},
            {"killed", b.killed},
            {"rows", rows},
            {"rows_of_gaps", b.rowsOfGaps},
            {"lost_by_kill", b.lostByKill},
            {"unanswered", b.unanswered},
            {"answers_to_nobody", b.strays},
            {"without_notice", b.unnoticed},
            {"rows_lost", b.lostRows},
            {"rows_of_nobody", b.strangeRows},
            {"pictures", pictures.good},
            {"pictures_bad", pictures.bad},
            {"pictures_given_up", pictures.givenUp},
            {"pictures_unnamed", pictures.unnamed},
            {"pictures_lost_to_faults", pictures.lostByFault},
            {"pictures_without_row", pictures.withoutRow},
            {"damages", QJsonArray::fromStringList(damages)},
            {"crashes", crashes},
            {"latency_ms", timesJson(latencyMs)},
            {"ready_ms", timesJson(heartbeatMs)},
            {"first_answer_ms", timesJson(firstAnswerMs)},
            {"memory_kib", QJsonObject{{"warm", memory.warmKiB}, {"end", memory.endKiB}, {"peak", memory.peakKiB}}},
            {"stalls", QJsonObject{{"count", stalls.count}, {"longest_ms", stalls.longestMs}}},
            {"good", isGood()}};
}

SoakReport::Stalls SoakReport::stallsIn(const QString& logFile)
{
    Stalls stalls;
    QFile file(logFile);
    file.open(QIODevice::ReadOnly);
    const QByteArray key = " stall_ms=";
    while (!file.atEnd()) {
        const QByteArray text = ' ' + file.readLine();
        const int from = text.indexOf(key);
        if (from < 0)
            continue;
        ++stalls.count;
        stalls.longestMs = qMax(stalls.longestMs, text.mid(from + key.size()).split(' ').first().toDouble());
    }
    return stalls;
}
