#pragma once

#include <QDialog>

class QDialogButtonBox;
class QLabel;

/// A dialog whose fields are checked as they are typed and whose work answers later: OK stays off while something is
/// missing, the reason stands above it, and the dialog closes only when the work succeeded. GUI thread.
class FormDialog : public QDialog
{
    Q_OBJECT

protected:
    /// The dialog deletes itself when it is closed.
    explicit FormDialog(QWidget* parent);

    /// To be called when the .ui is set up; `message` shows what is missing or went wrong.
    void setUpForm(QLabel* message, QDialogButtonBox* buttons);

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

    QLabel* m_message = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    bool m_busy = false;
};
