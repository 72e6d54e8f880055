#pragma once

#include <QDialog>

class InlineMessage;
class QAbstractButton;
class QDialogButtonBox;
class QKeySequence;

namespace DialogForm {

/// What all dialogs have in common: fields, buttons and rows at least as high as a finger needs, no button for context
/// help.
void prepare(QDialog* dialog);
/// The same heights for fields that come later.
void prepareFields(QWidget* form);

/// The keys click the button; it needs none of them in its text.
void addShortcut(QDialog* dialog, const QKeySequence& keys, QAbstractButton* button);

/// Takes off the screen whatever a window has opened: nothing may stay behind one that closes.
void hideWindowsOf(QWidget* window);

/// Takes a window and its dialogs off the screen. The first line of the destructor of every window that listens to
/// fields: a field that loses the focus emits what was typed, and ~QDialog() hides the window, too, but only when its
/// members are gone already.
void takeDown(QWidget* window);

} // namespace DialogForm

/// A dialog whose fields are checked as they are typed and whose work answers later: OK stays off while something is
/// missing, the reason stands above it, and the dialog closes only when the work succeeded. GUI thread.
class FormDialog : public QDialog
{
    Q_OBJECT

protected:
    /// The dialog deletes itself when it is closed.
    explicit FormDialog(QWidget* parent);

    /// To be called when the .ui is set up; `message` shows what is missing or went wrong.
    void setUpForm(InlineMessage* message, QDialogButtonBox* buttons);

    /// What keeps the fields from being sent; empty when nothing does.
    virtual QString problem() const = 0;
    /// Whether the problem is none of the fields: nothing can be sent for now.
    virtual bool isBlocked() const { return false; }
    /// Sends the fields; finish() has to follow.
    virtual void submit() = 0;
    /// Sets all texts in the present language.
    virtual void retranslate() = 0;

    /// Looks at the fields anew. Connected to every field's change.
    void check();
    /// Ends submit(): closes the dialog, or shows the error and lets the user try again.
    void finish(const QString& error);

    void accept() override;
    void changeEvent(QEvent* event) override;

private:
    void showMessage(const QString& text, bool isError);
    void setBusy(bool busy);

    InlineMessage* m_message = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    bool m_busy = false;
};
