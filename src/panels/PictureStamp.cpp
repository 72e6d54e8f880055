#include "panels/PictureStamp.h"

#include "panels/TextFit.h"

#include <QPainter>

PictureStamp::PictureStamp(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void PictureStamp::setText(const QString& text)
{
    m_text = text;
    update();
}

void PictureStamp::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(128, 132, 136, 150));
    const int height = qBound(24, this->height() / 8, 44);
    const QRect plate(0, (this->height() - height) / 2, width(), height);
    painter.fillRect(plate, QColor(16, 20, 24, 215));
    painter.setPen(Qt::white);
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    drawFitted(painter, plate.adjusted(8, 0, -8, 0), Qt::AlignCenter, m_text, height / 2, 12);
}
