#pragma once

#include "common/forms/DialogForm.h"

#include <QTimer>

#include <memory>

class UserSession;

namespace Ui {
class LogInDialog;
}

/// Asks for name and password. While wrong passwords make everybody wait, it counts the seconds down; while the user
/// file is damaged, it says so and refuses.
class LogInDialog : public FormDialog
{
    Q_OBJECT

public:
    /// `session` outlives the dialog; `name` is proposed.
    LogInDialog(UserSession& session, const QString& name, QWidget* parent);
    ~LogInDialog() override;

protected:
    QString problem() const override;
    bool isBlocked() const override;
    void submit() override;
    void retranslate() override;

private:
    void countDown();

    const std::unique_ptr<Ui::LogInDialog> m_ui;
    UserSession& m_session;
    QTimer m_second; ///< runs only while there is a wait
};
