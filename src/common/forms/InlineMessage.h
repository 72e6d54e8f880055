#pragma once

#include "common/forms/Tone.h"

#include <QLabel>

/// The line of a dialog that tells what is missing, what went wrong or what was done; it takes the place of message
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
