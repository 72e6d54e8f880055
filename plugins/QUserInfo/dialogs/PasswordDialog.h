#pragma once

#include "common/forms/DialogForm.h"

#include <memory>

class UserSession;

namespace Ui {
class PasswordDialog;
}

/// Sets a password: one's own, which asks for the present one first, or as an administrator another user's.
class PasswordDialog : public FormDialog
{
    Q_OBJECT

public:
    enum Purpose { Own, Reset };

    /// `session` outlives the dialog; `name` is whose password is set.
    PasswordDialog(UserSession& session, Purpose purpose, const QString& name, QWidget* parent);
    ~PasswordDialog() override;

protected:
    QString problem() const override;
    void submit() override;
    void retranslate() override;

private:
    const std::unique_ptr<Ui::PasswordDialog> m_ui;
    UserSession& m_session;
    const Purpose m_purpose;
    const QString m_name;
};
