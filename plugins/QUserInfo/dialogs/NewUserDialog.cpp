#include "dialogs/NewUserDialog.h"

#include "accounts/UserSession.h"
#include "ui_NewUserDialog.h"

#include <QPushButton>

NewUserDialog::NewUserDialog(UserSession& session, Purpose purpose, QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::NewUserDialog>())
    , m_session(session)
    , m_purpose(purpose)
{
    m_ui->setupUi(this);
    const auto roles = AccountRules::roles();
    for (const Role role : roles)
        m_ui->roleBox->addItem(QString(), int(role));
    if (purpose == FirstAdministrator) {
        m_ui->roleBox->setCurrentIndex(m_ui->roleBox->findData(int(Role::Administrator)));
        m_ui->roleBox->setEnabled(false);
    } else {
        m_ui->introLabel->hide();
    }
    m_ui->nameEdit->setMaxLength(AccountRules::maxNameLength);
    for (QLineEdit* edit : {m_ui->nameEdit, m_ui->passwordEdit, m_ui->againEdit})
        connect(edit, &QLineEdit::textChanged, this, &NewUserDialog::check);
    for (QLineEdit* edit : {m_ui->passwordEdit, m_ui->againEdit})
        edit->setMaxLength(AccountRules::maxPasswordLength);
    setUpForm(m_ui->messageLabel, m_ui->buttonBox);
}

NewUserDialog::~NewUserDialog()
{
    DialogForm::takeDown(this);
}

QString NewUserDialog::problem() const
{
    QString problem = AccountRules::nameProblem(name());
    if (!problem.isEmpty())
        return problem;
    if (m_session.users().find(name()))
        return tr("用户“%1”已存在").arg(name());
    return AccountRules::passwordProblem(name(), m_ui->passwordEdit->text(), m_ui->againEdit->text());
}

void NewUserDialog::submit()
{
    const auto done = [this](const QString& error) { finish(error); };
    if (m_purpose == FirstAdministrator)
        m_session.createAdministrator(name(), m_ui->passwordEdit->text(), this, done);
    else
        m_session.addUser(name(), role(), m_ui->passwordEdit->text(), this, done);
}

void NewUserDialog::retranslate()
{
    m_ui->retranslateUi(this);
    for (int i = 0; i < m_ui->roleBox->count(); ++i)
        m_ui->roleBox->setItemText(i, AccountRules::roleText(Role(m_ui->roleBox->itemData(i).toInt())));
    if (m_purpose == FirstAdministrator) {
        setWindowTitle(tr("创建管理员"));
        m_ui->introLabel->setText(tr("首次启动：还没有用户。请创建管理员并设置密码，以后由管理员添加其他用户。"));
    }
    m_ui->buttonBox->button(QDialogButtonBox::Ok)
        ->setText(m_purpose == FirstAdministrator ? tr("创建并登录") : tr("添加"));
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(tr("取消"));
}

QString NewUserDialog::name() const
{
    return m_ui->nameEdit->text().trimmed();
}

Role NewUserDialog::role() const
{
    return Role(m_ui->roleBox->currentData().toInt());
}
