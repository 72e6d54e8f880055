#pragma once

#include "common/forms/InlineMessage.h"

#include <QDialog>
#include <QVector>

class GuidePage;
class QBoxLayout;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QStackedWidget;
class QToolButton;

/// Leads through steps, one page each: the row of steps with the present one marked, what is to be done, the page, and
/// "back" and "next" below. Enter goes on, Alt+Left goes back; steps that were reached can be clicked. What keeps from
/// going on is said beside the buttons. GUI thread.
class GuideDialog : public QDialog
{
    Q_OBJECT

public:
    int step() const;

public slots:
    /// Shows a step; later ones only as far as those before it let pass.
    void goTo(int step);
    void next();
    void back();

protected:
    explicit GuideDialog(QWidget* parent);
    ~GuideDialog() override;

    void addPage(GuidePage* page);
    /// What stays beside all pages, at their left.
    void setCompanion(QWidget* companion);
    /// Another button, at the left of "back".
    QPushButton* addButton(const QString& objectName);
    /// To be called when all is added.
    void begin();

    /// What the last page's button says, and does.
    virtual QString finishText() const = 0;
    virtual void finish() = 0;
    virtual QString windowText() const = 0;
    virtual void retranslate() {}

    /// What is in force now, at the right of the steps.
    void setState(Tone tone, const QString& text);
    /// Stays until the next step or change.
    void say(Tone tone, const QString& text);
    GuidePage* page(int step) const { return m_pages[step]; }

    void changeEvent(QEvent* event) override;

private:
    void buildRows();
    QHBoxLayout* buttonRow();
    void judge();
    void retranslateAll();
    /// The last step that can be shown.
    int reachable() const;

    QVector<GuidePage*> m_pages;
    QVector<QToolButton*> m_marks;
    QHBoxLayout* m_steps;
    QHBoxLayout* m_middle;
    QHBoxLayout* m_buttons;
    QLabel* m_state;
    QLabel* m_hint;
    QStackedWidget* m_stack;
    InlineMessage* m_message;
    QPushButton* m_back;
    QPushButton* m_next;
    QPushButton* m_close;
};
