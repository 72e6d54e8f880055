#pragma once

#include "common/LookColors.h"

#include <QMenu>

class QActionGroup;
class ScreenKeyboard;

/// The menu with the languages that there are, the look of the program, and its keyboard on the screen, which it has
/// itself. GUI thread.
class ViewMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ViewMenu(QWidget* parent = nullptr);

    // What is marked as chosen; nothing is emitted.
    void setLanguage(const QString& language);
    void setLook(LookKind look);

signals:
    /// The operator chose a language, by the name of its folder.
    void sgChangeLanguage(const QString& language);
    void lookChosen(LookKind look);

protected:
    void changeEvent(QEvent* event) override;

private:
    /// Lists the languages as they are now, each by its own name.
    void listLanguages();
    void retranslate();

    QString m_language; ///< what is chosen
    QActionGroup* m_languages;
    QActionGroup* m_looks;
    QAction* m_endOfLanguages;
    QAction* m_light;
    QAction* m_dark;
    QAction* m_contrast;
    ScreenKeyboard* m_keyboard;
    QActionGroup* m_keyboards;
    QAction* m_onTouch;
    QAction* m_always;
    QAction* m_never;
};
