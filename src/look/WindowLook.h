#pragma once

#include "common/LookColors.h"

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QVector>

class QAction;
class QMainWindow;

/// The look of the program: flat style, palette and style sheet of the application for all controls, style sheet of
/// the window's own parts, icons in one colour. The choice is kept in "/user/look.ini" below the home. GUI thread.
class WindowLook : public QObject
{
    Q_OBJECT

public:
    /// The icons of the window's actions go with the look. `window` outlives it.
    explicit WindowLook(QMainWindow* window);

    LookKind kind() const { return m_kind; }

    /// Gives one of the window's own parts (tool bar, middle, status bar) its style sheet, now and with every look.
    void dress(QWidget* part);

    /// Gives the host's style and palette back as they were before load(), when no other window wears ours.
    void takeOff();

public slots:
    /// Puts on the look that was chosen last; light before any choice.
    void load();
    /// Puts on a look, and keeps the choice.
    void choose(LookKind kind);
    /// Paints the icons anew; an action with the property "locked" gets a padlock.
    void dressIcons();

private:
    void wear();
    void dressParts();

    QMainWindow* m_window;
    QVector<QPointer<QWidget>> m_parts;
    LookKind m_kind = LookKind::Light;
    bool m_worn = false;
    QHash<QAction*, QIcon> m_icons; ///< as they were drawn, for a light ground
};
