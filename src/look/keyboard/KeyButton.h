#pragma once

#include "look/keyboard/ScreenKey.h"

#include <QPushButton>

/// A key under a finger: it acts when it is pressed, and takes no focus. Two fingers may press two of them at once.
/// GUI thread.
class KeyButton : public QPushButton
{
    Q_OBJECT

public:
    explicit KeyButton(QWidget* parent);

    void setKey(const ScreenKey& key);
    const ScreenKey& key() const { return m_key; }

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override { return {40, 40}; }

protected:
    bool event(QEvent* event) override;

private:
    ScreenKey m_key;
};
