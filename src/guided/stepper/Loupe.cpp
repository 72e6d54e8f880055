#include "guided/stepper/Loupe.h"

#include <QPainter>

namespace {
constexpr int side = 174;  // pixels of the screen
constexpr double zoom = 6; // of them for a pixel of the picture
const QColor cross(255, 0, 255);
} // namespace

Loupe::Loupe(QWidget* parent)
    : QWidget(parent)
{
    setFixedSize(sizeHint());
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

QSize Loupe::sizeHint() const
{
    return {side, side};
}

void Loupe::setPicture(const QImage& picture)
{
    m_picture = picture;
    update();
}

void Loupe::look(const QPointF& at, const QString& text, double radius)
{
    m_at = at;
    m_text = text;
    m_radius = radius;
    update();
}

void Loupe::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(40, 42, 45));
    const double half = 0.5 * side / zoom;
    const QPointF shown = m_at + QPointF(0.5, 0.5); // of the picture's corners
    if (!m_picture.isNull())
        painter.drawImage(QRectF(rect()), m_picture, QRectF(shown - QPointF(half, half), shown + QPointF(half, half)));
    painter.setPen(cross);
    painter.drawLine(QPointF(0, side / 2.0), QPointF(side, side / 2.0));
    painter.drawLine(QPointF(side / 2.0, 0), QPointF(side / 2.0, side));
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_radius > 0)
        painter.drawEllipse(QPointF(side / 2.0, side / 2.0), m_radius * zoom, m_radius * zoom);
    const QRect strip = rect().adjusted(0, side - painter.fontMetrics().height() - 4, 0, 0);
    painter.fillRect(strip, QColor(0, 0, 0, 170));
    painter.setPen(Qt::white);
    painter.drawText(strip, Qt::AlignCenter, m_text);
    painter.setPen(QColor(120, 120, 120));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
