#include "SetTally.h"

#include <QJsonArray>

#include <algorithm>

namespace {

double percent(int part, int whole)
{
    return whole > 0 ? 100.0 * part / whole : 0;
}

QString missedText(const ScoreSheet& sheet)
{
    QStringList reasons;
    for (const auto& [error, count] : sheet.missed())
        reasons.append(
            QStringLiteral("%1 %2").arg(QLatin1String(nameOf(static_cast<finder::FindError>(error)))).arg(count));
    return reasons.join(QStringLiteral(", "));
}

/// Filled up to a column's width, in which a Chinese character takes two places.
QByteArray column(const QString& text, int width)
{
    int places = 0;
    for (const QChar character : text)
        places += character.unicode() >= 0x2E80 ? 2 : 1;
    return (text + QString(std::max(0, width - places), QLatin1Char(' '))).toUtf8();
}

void printHeader(std::FILE* out)
{
    std::fprintf(out, "%-28s %-9s %5s %5s %6s %6s %5s %8s %7s %7s %8s %8s %7s %7s  %s\n", "cause", "way", "holes",
                 "none", "found%", "exact%", "wrong", "invented", "ctr p50", "p95 px", "ang p50", "p95 deg", "ms p50",
                 "p99", "missed");
}

void printRow(std::FILE* out, const QString& cause, Way way, const ScoreSheet& sheet)
{
    const auto ofFound = [&](double value, int decimals) {
        return sheet.found() > 0 ? QByteArray::number(value, 'f', decimals) : QByteArray("-");
    };
    std::fprintf(out, "%s %-9s %5d %5d %6.1f %6.1f %5d %8d %7s %7s %8s %8s %7.1f %7.1f  %s\n",
                 column(cause, 28).constData(), nameOf(way), sheet.holes(), sheet.wheels() - sheet.holes(),
                 percent(sheet.found(), sheet.holes()), percent(sheet.exact(), sheet.holes()), sheet.wrong(),
                 sheet.invented(), ofFound(sheet.centerError(0.5), 2).constData(),
                 ofFound(sheet.centerError(0.95), 2).constData(), ofFound(sheet.angleError(0.5), 4).constData(),
                 ofFound(sheet.angleError(0.95), 4).constData(), 1e3 * sheet.seconds(0.5), 1e3 * sheet.seconds(0.99),
                 qPrintable(missedText(sheet)));
}

void printRows(std::FILE* out, const QString& cause, const std::map<Way, ScoreSheet>& sheets)
{
    QString label = cause;
    for (const auto& [way, sheet] : sheets) {
        printRow(out, label, way, sheet);
        label.clear();
    }
}

QJsonObject jsonOf(const ScoreSheet& sheet)
{
    QJsonObject missed;
    for (const auto& [error, count] : sheet.missed())
        missed[QLatin1String(nameOf(static_cast<finder::FindError>(error)))] = count;
    return {{QStringLiteral("pictures"), sheet.wheels()},
            {QStringLiteral("holes"), sheet.holes()},
            {QStringLiteral("found"), sheet.found()},
            {QStringLiteral("exact"), sheet.exact()},
            {QStringLiteral("wrong"), sheet.wrong()},
            {QStringLiteral("invented"), sheet.invented()},
            {QStringLiteral("missed"), missed},
            {QStringLiteral("center_p50_px"), sheet.centerError(0.5)},
            {QStringLiteral("center_p95_px"), sheet.centerError(0.95)},
            {QStringLiteral("angle_p50_deg"), sheet.angleError(0.5)},
            {QStringLiteral("angle_p95_deg"), sheet.angleError(0.95)},
            {QStringLiteral("p50_ms"), 1e3 * sheet.seconds(0.5)},
            {QStringLiteral("p99_ms"), 1e3 * sheet.seconds(0.99)}};
}

QJsonObject jsonOf(const std::map<Way, ScoreSheet>& sheets)
{
    QJsonObject ways;
    for (const auto& [way, sheet] : sheets)
        ways[QLatin1String(nameOf(way))] = jsonOf(sheet);
    return ways;
}

QJsonArray jsonOf(const LimitTable& table)
{
    QJsonArray rows;
    for (const LimitTable::Row& row : table.rows())
        rows.append(QJsonObject{{QStringLiteral("limit"), row.limit},
                                {QStringLiteral("found"), row.found},
                                {QStringLiteral("refused"), row.refused},
                                {QStringLiteral("mistaken"), row.mistaken}});
    return rows;
}

} // namespace

LimitTable::LimitTable()
{
    for (size_t i = 0; i < m_rows.size(); ++i)
        m_rows[i].limit = static_cast<double>(i + 1) / 10;
}

void LimitTable::add(const Truth& truth, const Answer& answer, double score)
{
    for (Row& row : m_rows) {
        Answer limited = answer;
        limited.found = answer.found && score >= row.limit;
        const Verdict verdict = verdictOf(truth, limited);
        row.found += verdict == Verdict::Found;
        row.refused += verdict == Verdict::Missed;
        row.mistaken += verdict == Verdict::Wrong || verdict == Verdict::Invented;
    }
}

const char* nameOf(Way way)
{
    constexpr const char* names[] = {"taught", "examples", "auto", "hough", "templates"};
    return names[static_cast<size_t>(way)];
}

void SetTally::add(Way way, const QStringList& causes, const Truth& truth, const Answer& answer, double seconds)
{
    m_all[way].add(truth, answer, seconds);
    for (const QString& cause : causes)
        m_causes[cause][way].add(truth, answer, seconds);
}

void SetTally::addUnlimited(Way way, const Truth& truth, const Answer& answer, double score)
{
    m_limits[way].add(truth, answer, score);
}

void SetTally::addJudged(Way way, bool judged)
{
    ++m_judged[way].holes;
    m_judged[way].judged += judged;
}

void SetTally::print(std::FILE* out, int least) const
{
    printHeader(out);
    printRows(out, QStringLiteral("all"), m_all);
    for (const auto& [cause, sheets] : m_causes)
        if (sheets.begin()->second.wheels() >= least)
            printRows(out, cause, sheets);
    for (const auto& [way, count] : m_judged)
        std::fprintf(out, "\nholes among the candidates, %-9s %6.2f %%", nameOf(way),
                     percent(count.judged, count.holes));
    std::fprintf(out, "\n");
    for (const auto& [way, table] : m_limits) {
        std::fprintf(out, "\nscore limit, %-9s", nameOf(way));
        for (const auto& row : table.rows())
            std::fprintf(out, "%6.1f", row.limit);
        std::fprintf(out, "\n%-22s", "refused holes");
        for (const auto& row : table.rows())
            std::fprintf(out, "%6d", row.refused);
        std::fprintf(out, "\n%-22s", "wrong and invented");
        for (const auto& row : table.rows())
            std::fprintf(out, "%6d", row.mistaken);
        std::fprintf(out, "\n");
    }
}

QJsonObject SetTally::json() const
{
    QJsonObject causes{{QStringLiteral("all"), jsonOf(m_all)}};
    for (const auto& [cause, sheets] : m_causes)
        causes[cause] = jsonOf(sheets);
    QJsonObject limits;
    for (const auto& [way, table] : m_limits)
        limits[QLatin1String(nameOf(way))] = jsonOf(table);
    QJsonObject judged;
    for (const auto& [way, count] : m_judged)
        judged[QLatin1String(nameOf(way))] = percent(count.judged, count.holes);
    return {{QStringLiteral("causes"), causes},
            {QStringLiteral("limits"), limits},
            {QStringLiteral("among_candidates_percent"), judged}};
}
