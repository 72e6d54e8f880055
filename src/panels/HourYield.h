#pragma once

#include "panels/StationTally.h"

#include <QWidget>

/// The hours of the present shift: a bar of the parts of each, those found below, the others on top, and the yield of
/// each below its bar where there is room. GUI thread.
class HourYield : public QWidget
{
    Q_OBJECT

public:
    explicit HourYield(QWidget* parent = nullptr);

    void setHours(const QVector<StationTally::Hour>& hours);
    const QVector<StationTally::Hour>& hours() const { return m_hours; }

    QSize sizeHint() const override { return {220, 64}; }
    QSize minimumSizeHint() const override { return {120, 44}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect columnOf(int index) const;
    static QString tipOf(const StationTally::Hour& hour);

    QVector<StationTally::Hour> m_hours;
};
