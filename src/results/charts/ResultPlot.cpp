#include "results/charts/ResultPlot.h"

#include "common/LookColors.h"
#include "results/charts/CellPoints.h"

#include <QEvent>
#include <QPainter>
#include <qwt_column_symbol.h>
#include <qwt_date_scale_draw.h>
#include <qwt_date_scale_engine.h>
#include <qwt_legend.h>
#include <qwt_picker_machine.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_histogram.h>
#include <qwt_plot_magnifier.h>
#include <qwt_plot_marker.h>
#include <qwt_plot_panner.h>
#include <qwt_plot_zoomer.h>
#include <qwt_scale_draw.h>

#include <cmath>

namespace {

constexpr double pickPixels = 8;
constexpr int finePoints = 200;
constexpr double nextLine = 4; // pixels; closer lines would be one area
constexpr int leastAxis = 56;  // charts below each other begin at the same place

/// Names at whole numbers.
class NameScale : public QwtScaleDraw
{
public:
    explicit NameScale(QStringList names)
        : m_names(std::move(names))
    {
        setLabelRotation(m_names.size() > 6 ? -30 : 0);
        setLabelAlignment(m_names.size() > 6 ? Qt::AlignLeft | Qt::AlignBottom : Qt::AlignHCenter | Qt::AlignBottom);
    }
    QwtText label(double value) const override
    {
        const int at = qRound(value);
        return std::abs(value - at) < 1e-6 ? QwtText(m_names.value(at)) : QwtText();
    }

private:
    const QStringList m_names;
};

/// Points whose sign in the legend is a point.
class DotCurve : public QwtPlotCurve
{
public:
    using QwtPlotCurve::QwtPlotCurve;

    QwtGraphic legendIcon(int, const QSizeF& size) const override
    {
        QwtGraphic icon;
        icon.setDefaultSize(size);
        QPainter painter(&icon);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(pen().color());
        const double dot = qMin(size.width(), size.height());
        painter.drawEllipse(QRectF((size.width() - dot) / 2, (size.height() - dot) / 2, dot, dot));
        return icon;
    }
};

QwtText titleOf(const QString& text)
{
    QwtText title(text);
    QFont font;
    font.setBold(false);
    title.setFont(font);
    return title;
}

/// What can be read over dots.
QwtText labelOf(const QString& text)
{
    QwtText label = titleOf(text);
    QColor ground = lookColors().card;
    ground.setAlpha(210);
    label.setBackgroundBrush(ground);
    return label;
}

/// A line across, unless one before stands as near as can be; with its text, unless that would lie over one before.
class Mark : public QwtPlotMarker
{
public:
    explicit Mark(const Mark* before)
        : m_before(before)
    {
    }
    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const override
    {
        const double x = xMap.transform(xValue());
        const double lastLine = m_before ? m_before->m_lastLine : -1e9;
        m_lastLine = x - lastLine >= nextLine ? x : lastLine;
        const double last = m_before ? m_before->m_lastText : -1e9;
        m_hasRoom = x - last >= label().textSize().height();
        m_lastText = m_hasRoom ? x : last;
        if (m_lastLine == x)
            QwtPlotMarker::draw(painter, xMap, yMap, canvas);
    }

protected:
    void drawLabel(QPainter* painter, const QRectF& canvas, const QPointF& place) const override
    {
        if (m_hasRoom)
            QwtPlotMarker::drawLabel(painter, canvas, place);
    }

private:
    const Mark* m_before;
    mutable bool m_hasRoom = true;
    mutable double m_lastText = 0; ///< where the last text stands, up to this line
    mutable double m_lastLine = 0; ///< likewise
};

} // namespace

/// Zooms, and tells the value under the mouse meanwhile.
class ResultPlot::Telling : public QwtPlotZoomer
{
public:
    Telling(ResultPlot* plot)
        : QwtPlotZoomer(plot->canvas())
        , m_plot(plot)
    {
        setTrackerMode(AlwaysOn);
        setMousePattern(QwtEventPattern::MouseSelect2, Qt::RightButton, Qt::ControlModifier);
        setMousePattern(QwtEventPattern::MouseSelect3, Qt::RightButton);
    }

protected:
    QwtText trackerTextF(const QPointF& place) const override
    {
        QwtText text(m_plot->tell(place));
        text.setBackgroundBrush(lookColors().card);
        text.setColor(lookColors().text);
        return text;
    }
    /// A rectangle too small to be meant as one is a click.
    bool accept(QPolygon& corners) const override
    {
        const QRect rect = QRect(corners.value(0), corners.value(corners.size() - 1)).normalized();
        if (rect.width() > pickPixels || rect.height() > pickPixels)
            return QwtPlotZoomer::accept(corners);
        m_plot->pick(invTransform(rect.center()));
        return false;
    }

private:
    ResultPlot* const m_plot;
};

ResultPlot::ResultPlot(QWidget* parent)
    : QwtPlot(parent)
{
    auto* area = new QwtPlotCanvas;
    area->setFrameStyle(QFrame::NoFrame);
    setCanvas(area);
    m_zoomer = new Telling(this);
    auto* magnifier = new QwtPlotMagnifier(canvas());
    magnifier->setMouseButton(Qt::NoButton);
    auto* middle = new QwtPlotPanner(canvas());
    middle->setMouseButton(Qt::MiddleButton);
    auto* control = new QwtPlotPanner(canvas());
    control->setMouseButton(Qt::LeftButton, Qt::ControlModifier);
    setAutoReplot(false);
    axisScaleDraw(yLeft)->setMinimumExtent(leastAxis);
    insertLegend(new QwtLegend, QwtPlot::TopLegend);
    wear();
}

ResultPlot::~ResultPlot() = default;

void ResultPlot::wear()
{
    const LookColors& colors = lookColors();
    setCanvasBackground(colors.card);
    m_zoomer->setRubberBandPen(QPen(colors.accent));
    m_zoomer->setTrackerPen(QPen(colors.text));
}

void ResultPlot::reset(const QString& title, const QString& xTitle, const QString& yTitle)
{
    detachItems();
    m_telling = nullptr;
    QwtText heading(title);
    QFont font = this->font();
    font.setBold(true);
    heading.setFont(font);
    setTitle(heading);
    setFooter(QwtText());
    setAxisTitle(xBottom, titleOf(xTitle));
    setAxisTitle(yLeft, titleOf(yTitle));
    enableAxis(yRight, false);
    setAxisScaleEngine(xBottom, new QwtLinearScaleEngine);
    setAxisScaleEngine(yLeft, new QwtLinearScaleEngine);
    setAxisScaleDraw(xBottom, new QwtScaleDraw);
    for (const int axis : {xBottom, yLeft, yRight})
        setAxisAutoScale(axis);
    auto* grid = new QwtPlotGrid;
    grid->setMajorPen(lookColors().border, 0, Qt::DotLine);
    grid->attach(this);
}

void ResultPlot::setTimeAxis()
{
    auto* draw = new QwtDateScaleDraw(Qt::UTC); // the times are local ones as if they were UTC
    draw->setDateFormat(QwtDate::Second, QStringLiteral("hh:mm:ss\nMM-dd"));
    draw->setDateFormat(QwtDate::Minute, QStringLiteral("hh:mm\nMM-dd"));
    draw->setDateFormat(QwtDate::Hour, QStringLiteral("hh:mm\nMM-dd"));
    for (const QwtDate::IntervalType type : {QwtDate::Day, QwtDate::Week})
        draw->setDateFormat(type, QStringLiteral("MM-dd\nyyyy"));
    draw->setDateFormat(QwtDate::Month, QStringLiteral("yyyy-MM"));
    setAxisScaleDraw(xBottom, draw);
    setAxisScaleEngine(xBottom, new QwtDateScaleEngine(Qt::UTC));
}

void ResultPlot::setNameAxis(const QStringList& names)
{
    setAxisScaleDraw(xBottom, new NameScale(names));
    setAxisScale(xBottom, -0.6, qMax(1, names.size()) - 0.4, 1);
}

void ResultPlot::setRightAxis(const QString& title, double from, double to)
{
    setAxisTitle(yRight, titleOf(title));
    if (from < to)
        setAxisScale(yRight, from, to);
}

void ResultPlot::finish()
{
    replot();
    m_zoomer->setZoomBase(false);
}

void ResultPlot::addDots(const QString& title, const QVector<QPointF>& points, const QColor& color,
                         const QVector<qint64>& ids)
{
    auto* curve = new DotCurve(title);
    curve->setStyle(QwtPlotCurve::Dots);
    curve->setPen(color, 3);
    curve->setItemInterest(QwtPlotItem::ScaleInterest, true);
    curve->setData(new CellPoints(points, ids));
    curve->attach(this);
}

void ResultPlot::addLine(const QString& title, const QVector<QPointF>& points, const QColor& color, Axis axis)
{
    auto* curve = new QwtPlotCurve(title);
    // A wide line of many points takes the painter a tenth of a second.
    const bool fine = points.size() > finePoints;
    curve->setPen(color, fine ? 1 : 2);
    curve->setRenderHint(QwtPlotItem::RenderAntialiased, !fine);
    curve->setSamples(points);
    curve->setYAxis(axis);
    enableAxis(axis);
    curve->attach(this);
}

void ResultPlot::addBars(const QString& title, const QVector<QPointF>& bars, double width, const QColor& color)
{
    QVector<QVector<double>> values;
    for (const QPointF& bar : bars)
        values.append(QVector<double>{bar.y()});
    addStack({title}, bars, values, {color}, width);
}

/// One histogram a layer, each from where the layer below it ends. Bars stand on zero, however equal they are.
void ResultPlot::addStack(const QStringList& titles, const QVector<QPointF>& places,
                          const QVector<QVector<double>>& values, const QVector<QColor>& colors, double width)
{
    axisScaleEngine(yLeft)->setReference(0);
    axisScaleEngine(yLeft)->setAttribute(QwtScaleEngine::IncludeReference);
    for (int layer = titles.size() - 1; layer >= 0; --layer) {
        QVector<QwtIntervalSample> samples;
        for (int i = 0; i < places.size(); ++i) {
            double top = 0;
            for (int below = 0; below <= layer; ++below)
                top += values.at(i).value(below);
            samples.append({top, places.at(i).x() - width / 2, places.at(i).x() + width / 2});
        }
        auto* bars = new QwtPlotHistogram(titles.at(layer));
        bars->setBrush(colors.value(layer));
        bars->setPen(QPen(Qt::NoPen));
        bars->setSamples(samples);
        bars->attach(this);
    }
}

void ResultPlot::addLevel(const QString& text, double y, const QColor& color)
{
    if (!std::isfinite(y))
        return;
    auto* marker = new QwtPlotMarker;
    marker->setLineStyle(QwtPlotMarker::HLine);
    marker->setLinePen(color, 1, Qt::DashLine);
    marker->setYValue(y);
    marker->setLabel(labelOf(text));
    marker->setLabelAlignment(Qt::AlignRight | Qt::AlignTop);
    marker->setItemAttribute(QwtPlotItem::Legend, false);
    marker->setItemAttribute(QwtPlotItem::AutoScale, true);
    marker->attach(this);
}

void ResultPlot::addMark(const QString& text, double x, const QColor& color)
{
    if (!std::isfinite(x))
        return;
    const QwtPlotItemList known = itemList(QwtPlotItem::Rtti_PlotMarker);
    const Mark* before = nullptr;
    for (int i = known.size() - 1; !before && i >= 0; --i)
        before = dynamic_cast<const Mark*>(known.at(i));
    auto* marker = new Mark(before);
    marker->setLineStyle(QwtPlotMarker::VLine);
    marker->setLinePen(color, 1, Qt::DashLine);
    marker->setXValue(x);
    marker->setLabel(labelOf(text));
    marker->setLabelOrientation(Qt::Vertical);
    marker->setLabelAlignment(Qt::AlignRight | Qt::AlignTop);
    marker->attach(this);
}

/// Below the chart, where it covers none of its points.
void ResultPlot::addNote(const QString& text)
{
    setFooter(titleOf(QString(text).replace(QLatin1Char('\n'), QStringLiteral("    "))));
}

void ResultPlot::pick(const QPointF& place)
{
    const double x = canvasMap(xBottom).transform(place.x());
    const double y = canvasMap(yLeft).transform(place.y());
    double nearest = pickPixels;
    qint64 uid = -1;
    const QwtPlotItemList curves = itemList(QwtPlotItem::Rtti_PlotCurve);
    for (QwtPlotItem* item : curves) {
        auto* points = dynamic_cast<CellPoints*>(static_cast<QwtPlotCurve*>(item)->data());
        for (size_t i = 0; points && i < points->size(); ++i) {
            const QPointF point = points->sample(i);
            const double distance =
                std::hypot(canvasMap(xBottom).transform(point.x()) - x, canvasMap(yLeft).transform(point.y()) - y);
            if (distance < nearest && points->id(int(i)) >= 0) {
                nearest = distance;
                uid = points->id(int(i));
            }
        }
    }
    if (uid >= 0)
        emit partPicked(uid);
    else
        emit placePicked(place);
}

void ResultPlot::changeEvent(QEvent* event)
{
    QwtPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_zoomer)
        wear();
}
