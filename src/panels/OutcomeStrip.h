#pragma once

#include "results/data/PartFilter.h"

#include <QWidget>

/// The last outcomes of a station as a row of bars, the newest at the right; one that failed stands taller than one
/// that was found, and bears its symbol. GUI thread.
class OutcomeStrip : public QWidget
{
    Q_OBJECT

public:
    explicit OutcomeStrip(QWidget* parent = nullptr);

    /// The newest last.
    void setParts(const QVector<PartRow>& parts);
    const QVector<PartRow>& parts() const { return m_parts; }

    /// The place of a part, by its index.
    QRect barOf(int index) const;

    QSize sizeHint() const override { return {400, 26}; }
    QSize minimumSizeHint() const override { return {200, 20}; }

signals:
    void partWanted(qint64 wall);

protected:
    bool event(QEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// -1 where there is none.
    int indexAt(const QPoint& position) const;
    void hover(int index);

    QVector<PartRow> m_parts;
    int m_hovered = -1;
};
