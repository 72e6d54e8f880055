#pragma once

#include "accounts/Account.h"
#include "common/forms/DialogForm.h"

#include <memory>

class UserSession;

namespace Ui {
class NewUserDialog;
}

/// Adds a user; on the first start it creates the administrator and logs him in.
class NewUserDialog : public FormDialog
{
    Q_OBJECT

public:
    enum Purpose { FirstAdministrator, AnyUser };

    /// `session` outlives the dialog.
    NewUserDialog(UserSession& session, Purpose purpose, QWidget* parent);
    ~NewUserDialog() override;

protected:
    QString problem() const override;
    void submit() override;
    void retranslate() override;

private:
    QString name() const;
    Role role() const;

    const std::unique_ptr<Ui::NewUserDialog> m_ui;
    UserSession& m_session;
    const Purpose m_purpose;
};
