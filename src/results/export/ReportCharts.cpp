#include "results/export/ReportCharts.h"

#include "common/LookColors.h"
#include "db/PartTable.h"

#include <QPainter>
#include <QSet>

#include <cmath>

namespace ReportCharts {
namespace {

const LookColors& ink()
{
    return lookColors(false);
}

double textHeight(const QPainter& painter)
{
    return QFontMetricsF(painter.font(), painter.device()).height();
}

double textWidth(const QPainter& painter, const QString& text)
{
    return QFontMetricsF(painter.font(), painter.device()).horizontalAdvance(text);
}

/// Equal steps of 1, 2 or 5 times a power of ten from below `low` to above `high`, about `wanted` of them.
QVector<double> ticksOf(double low, double high, int wanted)
{
    if (!(high > low)) {
        low -= 0.5;
        high = low + 1;
    }
    const double rough = (high - low) / wanted;
    const double power = std::pow(10, std::floor(std::log10(rough)));
    const double share = rough / power;
    const double step = power * (share <= 1 ? 1 : share <= 2 ? 2 : share <= 5 ? 5 : 10);
    QVector<double> ticks;
    for (double at = std::floor(low / step); (at - 1) * step < high; ++at)
        ticks.append(at * step);
    return ticks;
}

/// A plane with its scale on the left, or right, in a rectangle of the paper.
struct Plane
{
    QRectF place;
    double low = 0;
    double high = 1;

    double y(double value) const { return place.bottom() - (value - low) / (high - low) * place.height(); }
    void scale(QPainter& painter, const QVector<double>& ticks, bool right = false)
    {
        low = ticks.first();
        high = ticks.last();
        const double height = textHeight(painter);
        const double wide = 150;
        for (const double tick : ticks) {
            if (!right) {
                painter.setPen(QPen(ink().border, 1.5));
                painter.drawLine(QPointF(place.left(), y(tick)), QPointF(place.right(), y(tick)));
            }
            painter.setPen(ink().faint);
            const double from = right ? place.right() + 12 : place.left() - 12 - wide;
            painter.drawText(QRectF(from, y(tick) - height / 2, wide, height),
                             (right ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter,
                             QString::number(qAbs(tick) < 1e-9 * (high - low) ? 0 : tick, 'g', 6));
        }
    }
    void frame(QPainter& painter) const
    {
        painter.setPen(QPen(ink().faint, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(place);
    }
};

/// Texts below the plane, as many as there is room for.
void below(QPainter& painter, const Plane& plane, const QVector<QPair<double, QString>>& texts)
{
    double used = plane.place.left() - 1000;
    painter.setPen(ink().faint);
    for (const auto& [x, text] : texts) {
        const double wide = textWidth(painter, text) + 16;
        if (x - wide / 2 < used)
            continue;
        used = x + wide / 2;
        painter.drawText(QRectF(x - wide / 2, plane.place.bottom() + 8, wide, textHeight(painter)), Qt::AlignCenter,
                         text);
    }
}

void legend(QPainter& painter, const QRectF& place, const QStringList& names, const QVector<QColor>& colors)
{
    constexpr double mark = 22;
    double x = place.left();
    for (int i = 0; i < names.size(); ++i) {
        const double wide = textWidth(painter, names.at(i));
        painter.fillRect(QRectF(x, place.center().y() - mark / 2, mark, mark), colors.value(i));
        painter.setPen(ink().text);
        painter.drawText(QRectF(x + mark + 10, place.top(), wide + 10, place.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, names.at(i));
        x += mark + wide + 60;
    }
}

} // namespace

void yield(QPainter& painter, const QRectF& place, const QVector<Statistics::Bucket>& buckets,
           const QString& timeFormat, const QStringList& names)
{
    const double line = textHeight(painter);
    const QVector<QColor> colors{ink().good.ink.lighter(180), ink().bad.ink.lighter(130),
                                 ink().caution.ink.lighter(170), ink().text};
    legend(painter, QRectF(place.left(), place.top(), place.width(), line), names, colors);
    int most = 1;
    for (const Statistics::Bucket& bucket : buckets)
        most = qMax(most, bucket.tally.parts());
    Plane plane{place.adjusted(120, line + 20, -90, -line - 16)};
    plane.scale(painter, ticksOf(0, most, qMin(5, most)));
    const double step = plane.place.width() / qMax(1, buckets.size());
    QVector<QPair<double, QString>> texts;
    QVector<QPointF> yields;
    Plane percent{plane.place};
    percent.scale(painter, {0, 20, 40, 60, 80, 100}, true);
    for (int i = 0; i < buckets.size(); ++i) {
        const Statistics::Tally& tally = buckets.at(i).tally;
        const double x = plane.place.left() + (i + 0.5) * step;
        const int layers[] = {tally.found, tally.notFound, tally.refused};
        double base = 0;
        for (int layer = 0; layer < 3; ++layer) {
            painter.fillRect(QRectF(QPointF(x - 0.36 * step, plane.y(base + layers[layer])),
                                    QPointF(x + 0.36 * step, plane.y(base))),
                             colors.at(layer));
            base += layers[layer];
        }
        if (!std::isnan(tally.yield()))
            yields.append({x, percent.y(tally.yield())});
        texts.append({x, PartTable::timeOf(buckets.at(i).begin).toString(timeFormat)});
    }
    painter.setPen(QPen(colors.at(3), 6));
    painter.drawPolyline(yields.constData(), yields.size());
    painter.setBrush(colors.at(3));
    for (const QPointF& point : qAsConst(yields))
        painter.drawEllipse(point, 6, 6);
    plane.frame(painter);
    below(painter, plane, texts);
}

void bars(QPainter& painter, const QRectF& place, const QVector<QPair<QString, int>>& bars)
{
    int most = 1;
    double names = 0;
    for (const auto& [name, count] : bars) {
        most = qMax(most, count);
        names = qMax(names, textWidth(painter, name));
    }
    names = qMin(names + 10, place.width() * 0.45);
    const double row = place.height() / qMax(1, bars.size());
    const double longest = place.width() - names - 200;
    for (int i = 0; i < bars.size(); ++i) {
        const QRectF line(place.left(), place.top() + i * row, place.width(), row);
        const QString name =
            QFontMetricsF(painter.font(), painter.device()).elidedText(bars.at(i).first, Qt::ElideRight, names);
        painter.setPen(ink().text);
        painter.drawText(QRectF(line.left(), line.top(), names, row), Qt::AlignLeft | Qt::AlignVCenter, name);
        const double length = longest * bars.at(i).second / most;
        painter.fillRect(QRectF(line.left() + names + 20, line.top() + 0.2 * row, length, 0.6 * row), ink().bad.ink);
        painter.drawText(QRectF(line.left() + names + 35 + length, line.top(), 160, row),
                         Qt::AlignLeft | Qt::AlignVCenter, QString::number(bars.at(i).second));
    }
}

void trend(QPainter& painter, const QRectF& place, const QString& title, qint64 begin, qint64 end,
           const QVector<qint64>& walls, const QVector<double>& values)
{
    constexpr double dot = 3;
    const double line = textHeight(painter);
    painter.setPen(ink().text);
    painter.drawText(QRectF(place.left(), place.top(), place.width(), line), Qt::AlignLeft | Qt::AlignVCenter, title);
    const Statistics::Summary summary = Statistics::summary(values);
    Plane plane{place.adjusted(150, line + 22, -20, -line - 14)};
    plane.scale(painter, ticksOf(summary.minimum, summary.maximum, 4));
    QSet<QPair<int, int>> drawn;
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink().accent);
    for (int i = 0; i < values.size(); ++i) {
        if (std::isnan(values.at(i)))
            continue;
        const double x = plane.place.left() + plane.place.width() * double(walls.at(i) - begin) / double(end - begin);
        const double y = plane.y(values.at(i));
        const QPair<int, int> cell(int(x / dot), int(y / dot));
        if (drawn.contains(cell))
            continue;
        drawn.insert(cell);
        painter.drawEllipse(QPointF(x, y), dot, dot);
    }
    plane.frame(painter);
    constexpr int times = 5;
    QVector<QPair<double, QString>> texts;
    const QString format = end - begin > 86400000 ? QStringLiteral("MM-dd hh:mm") : QStringLiteral("hh:mm");
    for (int i = 0; i <= times; ++i)
        texts.append({plane.place.left() + plane.place.width() * i / times,
                      PartTable::timeOf(begin + (end - begin) * i / times).toString(format)});
    below(painter, plane, texts);
}

void distribution(QPainter& painter, const QRectF& place, const Statistics::Histogram& histogram, const QString& note)
{
    const double line = textHeight(painter);
    painter.setPen(ink().faint);
    painter.drawText(QRectF(place.left() + 90, place.top(), place.width() - 90, line), Qt::AlignLeft | Qt::AlignVCenter,
                     note);
    Plane plane{place.adjusted(90, line + 22, -30, -line - 14)};
    double most = std::ceil(histogram.normal(histogram.summary.mean));
    for (const int count : histogram.counts)
        most = qMax(most, double(count));
    plane.scale(painter, ticksOf(0, qMax(1.0, most), 4));
    const double step = plane.place.width() / qMax(1, histogram.counts.size());
    for (int i = 0; i < histogram.counts.size(); ++i)
        painter.fillRect(QRectF(QPointF(plane.place.left() + (i + 0.05) * step, plane.y(histogram.counts.at(i))),
                                QPointF(plane.place.left() + (i + 0.95) * step, plane.y(0))),
                         ink().accent.lighter(150));
    const double wide = histogram.width * histogram.counts.size();
    QVector<QPointF> curve;
    for (int i = 0; i <= 100 && histogram.summary.sigma > 0; ++i)
        curve.append({plane.place.left() + plane.place.width() * i / 100,
                      plane.y(histogram.normal(histogram.first + wide * i / 100))});
    painter.setPen(QPen(ink().text, 3));
    painter.drawPolyline(curve.constData(), curve.size());
    plane.frame(painter);
    QVector<QPair<double, QString>> texts;
    for (int i = 0; i <= 2 && wide > 0; ++i)
        texts.append({plane.place.left() + plane.place.width() * i / 2,
                      QString::number(histogram.first + wide * i / 2, 'g', 5)});
    below(painter, plane, texts);
}

} // namespace ReportCharts
