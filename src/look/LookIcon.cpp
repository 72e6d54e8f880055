#include "look/LookIcon.h"

#include <QIcon>
#include <QPainter>

namespace LookIcon {
namespace {

constexpr int side = 32;

QPixmap shape(const QIcon& drawn, int pixels, const QColor& color)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QPixmap source = drawn.pixmap(QSize(pixels, pixels));
    painter.drawPixmap(image.rect(), source, source.rect());
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    return QPixmap::fromImage(image);
}

template <typename Draw>
QIcon atEachRatio(Draw draw)
{
    QIcon icon;
    for (const int ratio : {1, 2}) {
        QPixmap pixmap = draw(side * ratio);
        pixmap.setDevicePixelRatio(ratio);
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

QIcon tinted(const QIcon& drawn, const QColor& color)
{
    return atEachRatio([&](int pixels) { return shape(drawn, pixels, color); });
}

QIcon locked(const QIcon& drawn, const QColor& color, const QColor& ground)
{
    static const QIcon padlock(QStringLiteral(":/toolbar/Resource/toolBar/lock.png"));
    return atEachRatio([&](int pixels) {
        QPixmap pixmap = shape(drawn, pixels, color);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRect corner(pixels * 15 / 32, pixels * 15 / 32, pixels * 17 / 32, pixels * 17 / 32);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawEllipse(corner);
        painter.drawPixmap(corner.adjusted(pixels / 16, 0, -pixels / 16, -pixels / 16), shape(padlock, pixels, color));
        return pixmap;
    });
}

} // namespace LookIcon
