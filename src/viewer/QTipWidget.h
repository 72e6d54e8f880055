#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;

/// A short text over a viewer, for a while; a click dismisses it.
class QTipWidget : public QWidget
{
    Q_OBJECT

public:
    /// Shows a text in the upper middle of a widget for so many milliseconds, then closes and deletes itself. A text
    /// that is still shown there gives way.
    static QTipWidget* showText(QWidget* over, const QString& text, int milliseconds = 2500);

    explicit QTipWidget(QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// In the upper middle of the widget below, whose size may change while the text is shown.
    void place();

    QLabel* m_label;
    QTimer m_timer;
};
