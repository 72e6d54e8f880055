#pragma once

#include <QVector>
#include <qwt_plot.h>

#include <functional>
#include <memory>

class QwtPlotZoomer;

/// A chart of results: one look for all of them; a rectangle drawn with the mouse zooms in, the wheel zooms about the
/// mouse, dragging with the middle button or with Ctrl moves, a right click steps back out. The value under the mouse
/// is told beside it, and a click leads on. GUI thread.
class ResultPlot : public QwtPlot
{
    Q_OBJECT

public:
    explicit ResultPlot(QWidget* parent = nullptr);
    ~ResultPlot() override;

    /// Takes all away that was shown.
    void reset(const QString& title, const QString& xTitle, const QString& yTitle);
    /// Times of PartTable along x.
    void setTimeAxis();
    /// Names along x, at 0, 1, 2 ...
    void setNameAxis(const QStringList& names);
    void setRightAxis(const QString& title, double from, double to);
    /// The whole of what is shown now is what zooming out comes back to.
    void finish();

    /// One dot a point. A click on one emits partPicked with its id.
    void addDots(const QString& title, const QVector<QPointF>& points, const QColor& color,
                 const QVector<qint64>& ids = {});
    void addLine(const QString& title, const QVector<QPointF>& points, const QColor& color, Axis axis = yLeft);
    void addBars(const QString& title, const QVector<QPointF>& bars, double width, const QColor& color);
    /// Bars upon each other: one row of values a bar.
    void addStack(const QStringList& titles, const QVector<QPointF>& places, const QVector<QVector<double>>& values,
                  const QVector<QColor>& colors, double width);
    void addLevel(const QString& text, double y, const QColor& color);
    /// A line across at a value or moment, with its text as far as there is room. One after the other, from the left.
    void addMark(const QString& text, double x, const QColor& color);
    void addNote(const QString& text);

    /// What is told of a place of the plane; none by default.
    void setTelling(std::function<QString(const QPointF& place)> telling) { m_telling = std::move(telling); }
    QString tell(const QPointF& place) const { return m_telling ? m_telling(place) : QString(); }

signals:
    void partPicked(qint64 uid);
    /// A click on the plane, in its units.
    void placePicked(const QPointF& place);

protected:
    void changeEvent(QEvent* event) override;

private:
    void wear();
    void pick(const QPointF& place);

    class Telling;
    QwtPlotZoomer* m_zoomer;
    std::function<QString(const QPointF&)> m_telling;
};
