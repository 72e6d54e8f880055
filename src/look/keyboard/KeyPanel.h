#pragma once

#include "look/keyboard/ScreenKey.h"

#include <QFrame>
#include <QVector>

class KeyButton;
class QGridLayout;

/// The keys on the screen, above the window for which they are: also above one that blocks all others. It never takes
/// the focus. GUI thread.
class KeyPanel : public QFrame
{
    Q_OBJECT

public:
    KeyPanel(KeyPage page, QWidget* window);

    KeyPage page() const { return m_page; }
    /// Lies down on the screen where it leaves the place, in its coordinates, free.
    void leaveFree(const QRect& place, const QRect& screen);

signals:
    /// A key was pressed; the text is what it types, or empty.
    void pressed(int key, const QString& text);
    void hideWanted();

private:
    void build();
    void turnTo(KeyPage page);
    void act(const ScreenKey& key);

    KeyPage m_page;
    QVector<KeyButton*> m_keys;
};

/// Where a panel of that size lies in `screen` without covering `place`: right below it or above it if it `isClose`, or
/// else at the screen's lower or upper edge, and at its sides as the last resort. Pure.
QPoint panelPlace(const QSize& panel, const QRect& place, const QRect& screen, bool isClose);
