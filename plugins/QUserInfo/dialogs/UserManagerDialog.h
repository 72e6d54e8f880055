#pragma once

#include "accounts/Account.h"

#include <QDialog>

#include <chrono>
#include <memory>

class LogInRules;
class QMenu;
class UserSession;

namespace Ui {
class UserManagerDialog;
}

/// The administrator's list of users. What it does takes effect at once; removing asks first. It closes itself when
/// the present user is no administrator any more. GUI thread.
class UserManagerDialog : public QDialog
{
    Q_OBJECT

public:
    /// `session` and `rules` outlive the dialog.
    UserManagerDialog(UserSession& session, LogInRules& rules, QWidget* parent);
    ~UserManagerDialog() override;

signals:
    /// Another time until the automatic log-out was stored.
    void idleLimitChanged(std::chrono::minutes before, std::chrono::minutes after);

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void fillTable();
    void fillRoleMenu();
    void updateButtons();
    void onCurrentUserChanged(const QString& name, int level);
    void onAdd();
    void onRole(Role role);
    void onPassword();
    void onRemove();
    void onIdleLimit(int minutes);
    void showIdleLimit();
    QString selectedName() const;

    const std::unique_ptr<Ui::UserManagerDialog> m_ui;
    UserSession& m_session;
    LogInRules& m_rules;
    QMenu* m_roleMenu;
};
