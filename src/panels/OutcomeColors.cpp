#include "panels/OutcomeColors.h"

#include "db/PartRecord.h"

#include <QPainter>

LampColors lampColors(Lamp lamp)
{
    const QColor dark(0x0b1014);
    switch (lamp) {
    case Lamp::Found:
        return {0x00ac60, dark};
    case Lamp::NotFound:
        return {0xb80c1c, Qt::white};
    case Lamp::Refused:
        return {0xffe23d, dark};
    case Lamp::Waiting:
        break;
    }
    return {0x1c232a, Qt::white};
}

Lamp lampOf(PartOutcome outcome)
{
    const Lamp lamps[] = {Lamp::Found, Lamp::NotFound, Lamp::Refused};
    return lamps[qBound(0, static_cast<int>(outcome), 2)];
}

void paintLampSymbol(QPainter& painter, Lamp lamp, const QRectF& square, const QColor& ink)
{
    const auto at = [&square](double x, double y) {
        return QPointF(square.left() + x * square.width(), square.top() + y * square.height());
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, qMax(1.5, square.width() / 6), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (lamp) {
    case Lamp::Found:
        painter.drawPolyline(QPolygonF({at(0.18, 0.55), at(0.42, 0.78), at(0.84, 0.24)}));
        break;
    case Lamp::NotFound:
        painter.drawLine(at(0.22, 0.22), at(0.78, 0.78));
        painter.drawLine(at(0.78, 0.22), at(0.22, 0.78));
        break;
    case Lamp::Refused:
        painter.drawLine(at(0.5, 0.14), at(0.5, 0.56));
        painter.drawPoint(at(0.5, 0.84));
        break;
    case Lamp::Waiting:
        for (const double x : {0.18, 0.5, 0.82})
            painter.drawPoint(at(x, 0.5));
        break;
    }
    painter.restore();
}
