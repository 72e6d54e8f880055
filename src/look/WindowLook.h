#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QVector>

class QAction;
class QMainWindow;

/// The look of the program, light or dark: flat style, palette of the application, style sheet of the window's own
/// parts, icons. The choice is kept in "/user/look.ini" below the home. GUI thread.
class WindowLook : public QObject
{
    Q_OBJECT

public:
    /// The icons of the window's tool bars go with the look. `window` outlives it.
    explicit WindowLook(QMainWindow* window);

    bool isDark() const { return m_dark; }

    /// Gives one of the window's own parts (tool bar, middle, status bar) its style sheet, now and with every look.
    /// Not for the window as a whole: its dialogs are to look as everywhere.
    void dress(QWidget* part);

    /// Gives the host's style and palette back as they were before load(), when no other window wears ours.
    void takeOff();

public slots:
    /// Frames the window's own parts while a test runs; the style sheet says how.
    void showTesting(bool testing);
    /// Puts on the look that was chosen last; light before any choice.
    void load();
    /// Puts on a look, and keeps the choice.
    void choose(bool dark);

private:
    void wear();
    void dressParts();
    void dressIcons();

    QMainWindow* m_window;
    QVector<QPointer<QWidget>> m_parts;
    bool m_dark = false;
    bool m_worn = false;
    QHash<QAction*, QIcon> m_icons; ///< as they were drawn, for a light ground
};
