#include "common/forms/Tone.h"

#include <QApplication>
#include <QLabel>
#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace {

bool isDark()
{
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

QColor textColor(Tone tone)
{
    if (tone == Tone::Error)
        return isDark() ? QColor(0xff8a80) : QColor(0xb3261e);
    return isDark() ? QColor(0xffcc66) : QColor(0x8a5300);
}

const char* toneName(Tone tone)
{
    switch (tone) {
    case Tone::Plain:
        return "plain";
    case Tone::Warning:
        return "warning";
    case Tone::Error:
        break;
    }
    return "error";
}

} // namespace

QColor toneGround(Tone tone)
{
    if (tone == Tone::Error)
        return isDark() ? QColor(0x5c2320) : QColor(0xfddcd8);
    return isDark() ? QColor(0x574314) : QColor(0xfff1d0);
}

void setTone(QWidget* widget, Tone tone)
{
    QPalette palette; // by palette: a style sheet of its own would give a field another height
    if (tone != Tone::Plain && qobject_cast<QLabel*>(widget)) {
        palette.setColor(QPalette::WindowText, textColor(tone));
    } else if (tone != Tone::Plain) {
        palette.setColor(QPalette::Base, toneGround(tone));
        palette.setColor(QPalette::Button, toneGround(tone)); // the ground of a closed list
    }
    widget->setPalette(palette);
    if (widget->property("tone") == QVariant(toneName(tone)))
        return;
    widget->setProperty("tone", toneName(tone));
    widget->style()->unpolish(widget); // or a style sheet would not see the property
    widget->style()->polish(widget);
}
