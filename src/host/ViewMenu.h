#pragma once

#include <QMenu>

class QActionGroup;
class QToolBar;

/// The menu of the tool bar with the languages that there are and the look of the program. GUI thread.
class ViewMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ViewMenu(QWidget* parent = nullptr);

    /// Puts the menu's button at the end of the bar.
    void addTo(QToolBar* bar);

    // What is marked as chosen; nothing is emitted.
    void setLanguage(const QString& language);
    void setDark(bool dark);

signals:
    /// The operator chose a language, by the name of its folder.
    void sgChangeLanguage(const QString& language);
    /// The operator chose the light or the dark look.
    void darkChosen(bool dark);

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
};
