#include "common/forms/InlineMessage.h"

#include <QPalette>
#include <QStyle>
#include <QVariant>

namespace {

const LookColors::Sign& signOf(Tone tone)
{
    return tone == Tone::Error ? lookColors().bad : lookColors().caution;
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
    return signOf(tone).ground;
}

void setGround(QWidget* widget, const LookColors::Sign& sign)
{
    QPalette palette;
    palette.setColor(QPalette::Window, sign.ground);
    palette.setColor(QPalette::WindowText, sign.ink);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

void setTone(QWidget* widget, Tone tone)
{
    QPalette palette; // by palette: a style sheet of its own would give a field another height
    if (tone != Tone::Plain && qobject_cast<QLabel*>(widget)) {
        palette.setColor(QPalette::WindowText, signOf(tone).ink);
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

QString breakable(const QString& text)
{
    constexpr int longestWord = 24;
    QString broken;
    int inWord = 0;
    for (const QChar c : text) {
        inWord = c.isSpace() ? 0 : inWord + 1;
        broken += c;
        if (c != QLatin1Char('/') && (inWord < longestWord || c.isHighSurrogate()))
            continue;
        broken += QChar(0x200b);
        inWord = 0;
    }
    return broken;
}

InlineMessage::InlineMessage(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setMinimumHeight(2 * fontMetrics().lineSpacing() + 4);
}

void InlineMessage::say(Tone tone, const QString& text)
{
    m_tone = tone;
    setTone(this, tone);
    setText(breakable(text));
}

void InlineMessage::sayOrHide(Tone tone, const QString& text)
{
    say(tone, text);
    setVisible(!text.isEmpty());
}
