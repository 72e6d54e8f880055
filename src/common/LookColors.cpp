#include "common/LookColors.h"

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

} // namespace

const LookColors& lookColors(bool isDark)
{
    return isDark ? dark() : light();
}

const LookColors& lookColors()
{
    return lookColors(QGuiApplication::palette().color(QPalette::Window).lightness() < 128);
}
