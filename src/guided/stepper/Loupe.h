#pragma once

#include <QImage>
#include <QPointF>
#include <QWidget>

/// A small piece of a picture, enlarged with its pixels plain to see, and a cross at a place in it. GUI thread.
class Loupe : public QWidget
{
    Q_OBJECT

public:
    explicit Loupe(QWidget* parent = nullptr);

    void setPicture(const QImage& picture);
    /// The place, pixels with the middle of the top-left one at (0, 0); what was found there, and its size on the
    /// picture, 0 for none.
    void look(const QPointF& at, const QString& text, double radius = 0);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_picture;
    QPointF m_at;
    QString m_text;
    double m_radius = 0;
};
