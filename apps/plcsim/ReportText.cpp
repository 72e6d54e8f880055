#include "ReportText.h"

#include <QJsonArray>

#include <algorithm>

namespace {

QString number(std::optional<double> value, int digits)
{
    return value ? QString::number(*value, 'f', digits) : QStringLiteral("-");
}

/// Right-justified; Chinese characters take two columns of a terminal.
QString cell(const QString& text, int width)
{
    const auto wide = std::count_if(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() >= 0x2E80; });
    return text.rightJustified(width - static_cast<int>(wide)) + QLatin1Char(' ');
}

QString title(const char* text, int width)
{
    return cell(QLatin1String(text), width);
}

QString spreadLine(const char* name, const std::optional<Spread>& spread, int digits, const char* unit)
{
    if (!spread)
        return {};
    const auto value = [&](double one) { return number(one, digits); };
    return QStringLiteral("%1 p50 %2  p95 %3  p99 %4  max %5 %6")
        .arg(QLatin1String(name), -18)
        .arg(value(spread->p50), value(spread->p95), value(spread->p99), value(spread->max), QLatin1String(unit));
}

QString memoryLine(const ReportFigures& figures)
{
    if (!figures.rssKibAtEnd)
        return {};
    const auto kib = [](const std::optional<qint64>& value) {
        return value ? QString::number(*value) : QStringLiteral("-");
    };
    return QStringLiteral("%1 after part 20 %2 KiB, at the end %3 KiB")
        .arg(QStringLiteral("resident memory"), -18)
        .arg(kib(figures.rssKibAfter20), kib(figures.rssKibAtEnd));
}

QString refusalLine(const ReportFigures& figures)
{
    if (!figures.refusals || figures.refusals->asked == 0)
        return {};
    return QStringLiteral("refused triggers   %1 of %2 answered with 999 and H")
        .arg(figures.refusals->refused)
        .arg(figures.refusals->asked);
}

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

QString ReportText::header()
{
    return title("part", 5) + title("st", 2) + title("image", 16) + title("model", 12) + title("true", 8) +
           title("angle", 8) + title("X", 9) + title("Y", 9) + title("error", 6) + title("ms", 8) +
           QStringLiteral("result");
}

QString ReportText::line(const PartRow& row)
{
    const auto answered = [&](double value) { return row.answered ? std::optional<double>(value) : std::nullopt; };
    const bool hole = row.image.hole.value_or(false);
    const QString truth = hole ? number(row.image.angle, 3) : QLatin1String(row.image.hole ? "none" : "-");
    return cell(QString::number(row.number), 5) + cell(QString::number(row.station), 2) + cell(row.image.file, 16) +
           cell(row.image.model.isEmpty() ? QString::number(row.image.index) : row.image.model, 12) + cell(truth, 8) +
           cell(number(answered(row.answer.angle), 3), 8) + cell(number(answered(row.answer.x), 3), 9) +
           cell(number(answered(row.answer.y), 3), 9) + cell(number(row.angleErrorDeg(), 3), 6) +
           cell(number(answered(row.latencyMs), 3), 8) + QLatin1String(verdictText(row.verdict()));
}

QStringList ReportText::summary(const ReportFigures& figures)
{
    QStringList lines{QStringLiteral("parts %1, replies %2, found %3, wrong %4")
                          .arg(figures.parts)
                          .arg(figures.replies)
                          .arg(figures.found)
                          .arg(figures.wrong),
                      spreadLine("angle error", figures.angleErrorDeg, 3, "deg"),
                      spreadLine("centre error", figures.centerErrorPx, 3, "px"),
                      spreadLine("trigger to reply", figures.latencyMs, 3, "ms"),
                      spreadLine("  engine", figures.engineMs, 3, "ms"),
                      spreadLine("  the rest", figures.restMs, 3, "ms (without engine and camera delay)"),
                      memoryLine(figures),
                      refusalLine(figures),
                      spreadLine("  refusal", figures.refusedMs, 3, "ms")};
    lines.removeAll(QString());
    lines.append(figures.allGood ? QStringLiteral("all good") : QStringLiteral("NOT all good"));
    return lines;
}

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
