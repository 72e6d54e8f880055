#pragma once

#include "common/LookColors.h"

#include <QLabel>

/// How a text or a field is meant. Shown by colours that fit a light and a dark window; the property "tone" of the
/// widget ("plain", "warning", "error") lets a style sheet choose its own.
enum class Tone { Plain, Warning, Error };

/// The ground of a field or cell that is meant so; not for Tone::Plain.
QColor toneGround(Tone tone);

/// Paints a label or a frame with its labels on a ground of its own.
void setGround(QWidget* widget, const LookColors::Sign& sign);

/// Colours a label's text or a field's ground.
void setTone(QWidget* widget, Tone tone);

/// The same text for a label that wraps: it may be broken after a separator of a path and within a word that nobody's
/// name ought to be long enough for, so that it never widens a window.
QString breakable(const QString& text);

/// The line of a dialog that says what is missing, what went wrong or what was done; it takes the place of message
/// boxes. Its room stays when it is empty, so that nothing jumps while somebody types.
class InlineMessage : public QLabel
{
    Q_OBJECT

public:
    explicit InlineMessage(QWidget* parent = nullptr);

    /// Takes the place of what was said before.
    void say(Tone tone, const QString& text);
    /// The same for a message that takes no room while there is nothing to say.
    void sayOrHide(Tone tone, const QString& text);
    void clear() { say(Tone::Plain, {}); }
    Tone tone() const { return m_tone; }

private:
    Tone m_tone = Tone::Plain;
};
