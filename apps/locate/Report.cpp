#include "Report.h"

#include <valvecell/CsvText.h>

#include <QFileInfo>

#include <cmath>

namespace {

const QStringList columns{QStringLiteral("found"), QStringLiteral("angle"), QStringLiteral("x"),
                          QStringLiteral("y"),     QStringLiteral("score"), QStringLiteral("error"),
                          QStringLiteral("tip"),   QStringLiteral("ms")};
const QStringList endColumns{QStringLiteral("status"), QStringLiteral("problem")};
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

Comparison Comparison::of(const finder::FindResult& present, const finder::FindResult& edited)
{
    Comparison comparison;
    if (present.found() != edited.found()) {
        comparison.change = present.found() ? Change::Lost : Change::Gained;
    } else if (present.found()) {
        comparison.moved = cv::norm(edited.hole - present.hole);
        comparison.turned = std::abs(std::remainder(edited.angle - present.angle, 360.0));
        const bool moved = comparison.moved > movedLimit || comparison.turned > turnedLimit;
        comparison.change = moved ? Change::Moved : Change::Same;
    }
    return comparison;
}

QString Comparison::name() const
{
    switch (change) {
    case Change::Same:
        return QStringLiteral("same");
    case Change::Moved:
        return QStringLiteral("moved");
    case Change::Gained:
        return QStringLiteral("gained");
    case Change::Lost:
        return QStringLiteral("lost");
    case Change::BothMissed:
        break;
    }
    return QStringLiteral("missed");
}

void ComparisonSummary::add(const Located& located)
{
    const Comparison comparison = Comparison::of(located.present.result, located.edited.result);
    ++m_images;
    m_foundPresent += located.present.result.found();
    m_foundEdited += located.edited.result.found();
    m_gained += comparison.change == Comparison::Change::Gained;
    m_lost += comparison.change == Comparison::Change::Lost;
    m_moved += comparison.change == Comparison::Change::Moved;
    m_largestMove = std::max(m_largestMove, comparison.moved);
    m_slowestPresent = std::max(m_slowestPresent, located.present.milliseconds);
    if (located.edited.milliseconds >= m_slowestEdited) {
        m_slowestEdited = located.edited.milliseconds;
        m_slowestImage = QFileInfo(located.file).fileName();
    }
}

QString ComparisonSummary::text() const
{
    return QStringLiteral("%1 images, found %2 -> %3, gained %4, lost %5, moved %6 (at most %7 px), "
                          "slowest %8 -> %9 ms (%10)")
        .arg(m_images)
        .arg(m_foundPresent)
        .arg(m_foundEdited)
        .arg(m_gained)
        .arg(m_lost)
        .arg(m_moved)
        .arg(m_largestMove, 0, 'f', 2)
        .arg(m_slowestPresent, 0, 'f', 1)
        .arg(m_slowestEdited, 0, 'f', 1)
        .arg(m_slowestImage);
}

namespace Report {

QJsonObject lineOf(const Located& located)
{
    QJsonObject line = objectOf(located.present);
    const bool judged = located.problem.isEmpty();
    line.insert(QStringLiteral("image"), located.file);
    line.insert(QStringLiteral("name"), QFileInfo(located.file).fileName());
    line.insert(QStringLiteral("status"), QLatin1String(!judged                          ? "error"
                                                        : located.present.result.found() ? "found"
                                                                                         : "nothing"));
    line.insert(QStringLiteral("problem"), judged ? QJsonValue() : QJsonValue(located.problem));
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
    cells += endColumns;
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
    appendCells(&cells, line, endColumns);
    return CsvText::line(cells).toUtf8();
}

} // namespace Report
