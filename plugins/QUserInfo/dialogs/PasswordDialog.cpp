#include "dialogs/PasswordDialog.h"

#include "accounts/UserSession.h"
#include "ui_PasswordDialog.h"

#include <QPushButton>

PasswordDialog::PasswordDialog(UserSession& session, Purpose purpose, const QString& name, QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::PasswordDialog>())
    , m_session(session)
    , m_purpose(purpose)
    , m_name(name)
{
    m_ui->setupUi(this);
    m_ui->presentLabel->setVisible(purpose == Own);
    m_ui->presentEdit->setVisible(purpose == Own);
    for (QLineEdit* edit : {m_ui->presentEdit, m_ui->passwordEdit, m_ui->againEdit}) {
        edit->setMaxLength(AccountRules::maxPasswordLength);
        connect(edit, &QLineEdit::textChanged, this, &PasswordDialog::check);
    }
    setUpForm(m_ui->messageLabel, m_ui->buttonBox);
}

PasswordDialog::~PasswordDialog()
{
    DialogForm::takeDown(this);
}

QString PasswordDialog::problem() const
{
    if (m_purpose == Own && m_ui->presentEdit->text().isEmpty())
        return tr("请输入现在的密码");
    return AccountRules::passwordProblem(m_name, m_ui->passwordEdit->text(), m_ui->againEdit->text());
}

void PasswordDialog::submit()
{
    const auto done = [this](const QString& error) { finish(error); };
    if (m_purpose == Own)
        m_session.changeOwnPassword(m_ui->presentEdit->text(), m_ui->passwordEdit->text(), this, done);
    else
        m_session.resetPassword(m_name, m_ui->passwordEdit->text(), this, done);
}

void PasswordDialog::retranslate()
{
    m_ui->retranslateUi(this);
    setWindowTitle(m_purpose == Own ? tr("修改密码") : tr("重设密码"));
    m_ui->introLabel->setText(m_purpose == Own ? tr("修改您的密码：%1").arg(m_name)
                                               : tr("为用户“%1”设置新密码。").arg(m_name));
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("确定"));
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(tr("取消"));
}
