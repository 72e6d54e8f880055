#pragma once

#include <QLabel>

/// A label that never widens its window: each line that is too long for it is shown with an ellipsis, and the tip has
/// the whole. Of a rich text that is too long the first format holds for all. text() is what was set. GUI thread.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    QSize sizeHint() const override { return {0, QLabel::sizeHint().height()}; }
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool isRich() const { return textFormat() == Qt::RichText; }
    QString shownText() const;
    void paintRich(QPainter& painter) const;
};
