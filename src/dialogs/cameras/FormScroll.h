#pragma once

#include <QScrollArea>
#include <QScrollBar>

/// Lets a form be as tall as its camera has settings, on a screen that is not: it shows all when there is room, and
/// scrolls upright when there is none.
class FormScroll : public QScrollArea
{
    Q_OBJECT

public:
    explicit FormScroll(QWidget* parent = nullptr)
        : QScrollArea(parent)
    {
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        viewport()->setAutoFillBackground(false);
    }

    QSize sizeHint() const override { return widget() ? widget()->sizeHint() + barSize() : QScrollArea::sizeHint(); }
    QSize minimumSizeHint() const override
    {
        const QSize form = widget() ? widget()->minimumSizeHint() + barSize() : QSize();
        return {form.width(), qMin(form.height(), leastHeight)};
    }

protected:
    void showEvent(QShowEvent* event) override
    {
        if (widget())
            widget()->setAutoFillBackground(false); // the ground is that of the page
        QScrollArea::showEvent(event);
    }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::LayoutRequest)
            updateGeometry(); // it has other fields
        return QScrollArea::eventFilter(object, event);
    }

private:
    static constexpr int leastHeight = 150;

    QSize barSize() const { return {verticalScrollBar()->sizeHint().width(), 0}; }
};
