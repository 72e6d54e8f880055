#include "Report.h"

#include "Comparison.h"

#include <valvecell/CsvText.h>

#include <QFileInfo>

namespace {

const QStringList columns{QStringLiteral("found"), QStringLiteral("angle"), QStringLiteral("x"),
                          QStringLiteral("y"),     QStringLiteral("score"), QStringLiteral("error"),
                          QStringLiteral("tip"),   QStringLiteral("ms")};
const QStringList comparisonColumns{QStringLiteral("change"), QStringLiteral("moved_px"), QStringLiteral("turned_deg")};

QJsonValue ifSo(bool known, double value)
{
    return known ? QJsonValue(value) : QJsonValue();
}

QJsonObject objectOf(const LocateRun& run)
{
    const finder::FindResult& r = run.result;
    const bool hub = r.hub.radius > 0;
    return {{QStringLiteral("found"), r.found()},
            {QStringLiteral("angle"), r.angle},
            {QStringLiteral("x"), ifSo(r.found(), r.hole.x)},
            {QStringLiteral("y"), ifSo(r.found(), r.hole.y)},
            {QStringLiteral("hub_x"), ifSo(hub, r.axis.x)},
            {QStringLiteral("hub_y"), ifSo(hub, r.axis.y)},
            {QStringLiteral("radius"), ifSo(r.found(), r.holeRadius)},
            {QStringLiteral("score"), r.score},
            {QStringLiteral("error"), static_cast<int>(r.error)},
            {QStringLiteral("tip"), finder::tipOf(r)},
            {QStringLiteral("ms"), run.milliseconds},
            {QStringLiteral("rim_radius"), ifSo(hub, r.hub.radius)},
            {QStringLiteral("runner_up"), r.runnerUpScore},
            {QStringLiteral("edge_points"), r.edgePoints},
            {QStringLiteral("residual"), r.residual}};
}

/// Texts always stand between quotation marks, so that a column looks the same in every line.
QString cell(const QJsonValue& value)
{
    return value.isString() ? CsvText::quoted(CsvText::disarmed(value.toString())) : value.toVariant().toString();
}

void appendCells(QStringList* cells, const QJsonObject& object, const QStringList& names)
{
    for (const QString& name : names)
        cells->append(cell(object.value(name)));
}

} // namespace

namespace Report {

QJsonObject lineOf(const Located& located)
{
    QJsonObject line = objectOf(located.present);
    line.insert(QStringLiteral("image"), QFileInfo(located.file).fileName());
    if (located.compared) {
        const Comparison comparison = Comparison::of(located.present.result, located.edited.result);
        line.insert(QStringLiteral("change"), comparison.name());
        line.insert(QStringLiteral("moved_px"), comparison.moved);
        line.insert(QStringLiteral("turned_deg"), comparison.turned);
        line.insert(QStringLiteral("edited"), objectOf(located.edited));
    }
    return line;
}

QByteArray csvHeader(bool compared)
{
    QStringList cells{CsvText::start() + QStringLiteral("image")};
    cells += columns;
    if (compared) {
        cells += comparisonColumns;
        for (const QString& column : columns)
            cells.append(QStringLiteral("edited_") + column);
    }
    return CsvText::line(cells).toUtf8();
}

QByteArray csvLine(const Located& located)
{
    const QJsonObject line = lineOf(located);
    QStringList cells{cell(located.file)};
    appendCells(&cells, line, columns);
    if (located.compared) {
        appendCells(&cells, line, comparisonColumns);
        appendCells(&cells, line.value(QStringLiteral("edited")).toObject(), columns);
    }
    return CsvText::line(cells).toUtf8();
}

} // namespace Report
