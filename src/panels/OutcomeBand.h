#pragma once

#include "panels/OutcomeColors.h"

#include <QWidget>

/// The lamp of a station over its whole width: colour, symbol and word, readable from three metres, and beside them
/// which part it is of and what the PLC got. GUI thread.
class OutcomeBand : public QWidget
{
    Q_OBJECT

public:
    static constexpr int leastHeight = 56;

    struct Content
    {
        Lamp lamp = Lamp::Waiting;
        QString word;
        QString part = {}; ///< its time and its model
        QString sent = {};
        bool test = false; ///< hatched, so that nobody takes it for a part's
    };

    explicit OutcomeBand(QWidget* parent = nullptr);

    void setContent(const Content& content);
    const Content& content() const { return m_content; }

    QSize sizeHint() const override { return {400, leastHeight}; }
    QSize minimumSizeHint() const override { return {200, leastHeight}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Content m_content;
};
