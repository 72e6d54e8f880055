#include "ReportText.h"

#include <QJsonArray>

namespace {

template <typename Number>
QJsonValue value(const std::optional<Number>& number)
{
    return number ? QJsonValue(*number) : QJsonValue();
}

QJsonValue errors(const std::optional<Spread>& spread)
{
    if (!spread)
        return {};
    return QJsonObject{{"p50", spread->p50}, {"p95", spread->p95}, {"max", spread->max}};
}

QJsonValue times(const std::optional<Spread>& spread)
{
    if (!spread)
        return {};
    return QJsonObject{{"p50", spread->p50}, {"p99", spread->p99}, {"max", spread->max}};
}

QJsonValue text(const QString& string)
{
    return string.isEmpty() ? QJsonValue() : QJsonValue(string);
}

QJsonObject rowJson(const PartReport& report, const PartRow& row)
{
    const bool hole = row.image.hole.value_or(false);
    const auto answered = [&](double number) { return row.answered ? QJsonValue(number) : QJsonValue(); };
    return {{"part", row.number},
            {"station", row.station},
            {"image", text(row.image.file)},
            {"model", text(row.image.model)},
            {"index", row.image.index},
            {"hole", value(row.image.hole)},
            {"true_angle", hole ? QJsonValue(row.image.angle) : QJsonValue()},
            {"angle", answered(row.answer.angle)},
            {"x", answered(row.answer.x)},
            {"y", answered(row.answer.y)},
            {"angle_error_deg", value(row.angleErrorDeg())},
            {"center_error_px", value(row.centerErrorPx)},
            {"latency_ms", answered(row.latencyMs)},
            {"engine_ms", row.road ? QJsonValue(row.road->engineMs) : QJsonValue()},
            {"rest_ms", value(report.restMs(row))},
            {"rss_kib", row.road ? QJsonValue(row.road->rssKib) : QJsonValue()},
            {"result", verdictText(row.verdict())}};
}

QJsonValue memory(const ReportFigures& figures)
{
    if (!figures.rssKibAtEnd)
        return {};
    return QJsonObject{{"after_20", value(figures.rssKibAfter20)}, {"at_end", value(figures.rssKibAtEnd)}};
}

QJsonValue refusals(const ReportFigures& figures)
{
    if (!figures.refusals)
        return {};
    return QJsonObject{{"asked", figures.refusals->asked},
                       {"refused", figures.refusals->refused},
                       {"latency_ms", times(figures.refusedMs)}};
}

} // namespace

QJsonObject ReportText::json(const PartReport& report)
{
    const ReportFigures figures = report.figures();
    QJsonArray rows;
    for (const PartRow& row : report.rows())
        rows.append(rowJson(report, row));
    return {{"parts", figures.parts},
            {"replies", figures.replies},
            {"found", figures.found},
            {"wrong", figures.wrong},
            {"angle_error_deg", errors(figures.angleErrorDeg)},
            {"center_error_px", errors(figures.centerErrorPx)},
            {"latency_ms", times(figures.latencyMs)},
            {"engine_ms", times(figures.engineMs)},
            {"rest_ms", times(figures.restMs)},
            {"rss_kib", memory(figures)},
            {"refused", refusals(figures)},
            {"all_good", figures.allGood},
            {"rows", rows}};
}
