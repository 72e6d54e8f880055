#include "common/forms/InlineMessage.h"

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
    QString breakable = text; // a long path may be broken after a separator
    setText(breakable.replace(QLatin1Char('/'), QStringLiteral("/\u200b")));
}

void InlineMessage::sayOrHide(Tone tone, const QString& text)
{
    say(tone, text);
    setVisible(!text.isEmpty());
}
