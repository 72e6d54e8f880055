#include "look/keyboard/KeyButton.h"

#include <QEvent>

KeyButton::KeyButton(QWidget* parent)
    : QPushButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_AcceptTouchEvents); // or a second finger would wait for the first
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void KeyButton::setKey(const ScreenKey& key)
{
    m_key = key;
    setObjectName(QStringLiteral("key") + key.face);
    setText(QString(key.face).replace(QLatin1Char('&'), QLatin1String("&&")));
    setAutoRepeat(key.key == Qt::Key_Backspace || key.key == Qt::Key_Left || key.key == Qt::Key_Right);
}

bool KeyButton::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
        setDown(true);
        emit pressed();
        return true;
    case QEvent::TouchUpdate:
        return true;
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        setDown(false);
        return true;
    default:
        return QPushButton::event(event);
    }
}
