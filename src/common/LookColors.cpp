#include "common/LookColors.h"

#include <QFile>
#include <QGuiApplication>
#include <QPalette>

namespace {

// Inks have a contrast of at least 4.5 to 1 to their grounds, to the card and to the window.
const LookColors& light()
{
    static const LookColors colors{0xeceff2,
                                   0xffffff,
                                   0xffffff,
                                   0xd3dae0,
                                   0x17222b,
                                   0x56636e,
                                   0x1b6f80,
                                   {0x12702f, 0xdff3e4},
                                   {0x855000, 0xffefcf},
                                   {0xb3211c, 0xfde1de}};
    return colors;
}

const LookColors& dark()
{
    static const LookColors colors{0x161b20,
                                   0x20272e,
                                   0x303b45,
                                   0x37424c,
                                   0xe8eef2,
                                   0x9fadb8,
                                   0x5fbccd,
                                   {0x6fdb8b, 0x1b3a26},
                                   {0xffc861, 0x44351a},
                                   {0xff9086, 0x4a2320}};
    return colors;
}

const LookColors& contrast()
{
    static const LookColors colors{Qt::black,
                                   Qt::black,
                                   Qt::black,
                                   Qt::white,
                                   Qt::white,
                                   0xc8c8c8,
                                   0xffff00,
                                   {0x3cff7d, 0x002a10},
                                   {0xffd91a, 0x332900},
                                   {0xff9c94, 0x480000}};
    return colors;
}

} // namespace

const LookColors& lookColors(LookKind kind)
{
    switch (kind) {
    case LookKind::Light:
        return light();
    case LookKind::Dark:
        return dark();
    case LookKind::Contrast:
        break;
    }
    return contrast();
}

const LookColors& lookColors()
{
    const QColor window = QGuiApplication::palette().color(QPalette::Window);
    if (window == contrast().window)
        return contrast();
    return window.lightness() < 128 ? dark() : light();
}

QString lookSheet(const QString& name, const LookColors& colors)
{
    QFile file(QStringLiteral(":/qss/%1.qss").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qWarning("no style sheet %s", qUtf8Printable(file.fileName()));
    QString sheet = QString::fromUtf8(file.readAll());
    const QPair<QLatin1String, QColor> names[] = {
        {QLatin1String("@window"), colors.window},
        {QLatin1String("@card"), colors.card},
        {QLatin1String("@field"), colors.field},
        {QLatin1String("@border"), colors.border},
        {QLatin1String("@text"), colors.text},
        {QLatin1String("@faint"), colors.faint},
        {QLatin1String("@accent"), colors.accent},
        {QLatin1String("@goodInk"), colors.good.ink},
        {QLatin1String("@goodGround"), colors.good.ground},
        {QLatin1String("@cautionInk"), colors.caution.ink},
        {QLatin1String("@cautionGround"), colors.caution.ground},
        {QLatin1String("@badInk"), colors.bad.ink},
        {QLatin1String("@badGround"), colors.bad.ground},
    };
    for (const auto& [token, color] : names)
        sheet.replace(token, color.name());
    return sheet;
}
