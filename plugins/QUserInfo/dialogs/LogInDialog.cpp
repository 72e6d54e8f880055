#include "dialogs/LogInDialog.h"

#include "accounts/UserSession.h"
#include "ui_LogInDialog.h"

#include <QPushButton>

LogInDialog::LogInDialog(UserSession& session, const QString& name, QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::LogInDialog>())
    , m_session(session)
{
    m_ui->setupUi(this);
    for (const Account& account : session.users().accounts())
        m_ui->nameBox->addItem(account.name);
    m_ui->nameBox->setCurrentText(name);
    m_ui->nameBox->lineEdit()->setMaxLength(AccountRules::maxNameLength);
    m_ui->passwordEdit->setMaxLength(AccountRules::maxPasswordLength);
    connect(m_ui->nameBox, &QComboBox::currentTextChanged, this, &LogInDialog::check);
    connect(m_ui->passwordEdit, &QLineEdit::textChanged, this, &LogInDialog::check);
    m_second.setInterval(200);
    connect(&m_second, &QTimer::timeout, this, &LogInDialog::countDown);
    setUpForm(m_ui->messageLabel, m_ui->buttonBox);
    countDown();
    if (!name.isEmpty())
        m_ui->passwordEdit->setFocus();
}

LogInDialog::~LogInDialog()
{
    DialogForm::takeDown(this);
}

QString LogInDialog::problem() const
{
    if (m_session.users().state() == UserStore::Damaged)
        return m_session.users().damage();
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(m_session.wait()).count();
    if (seconds > 0)
        return tr("密码错误，请等待 %1 秒后再试").arg(seconds);
    if (m_ui->nameBox->currentText().trimmed().isEmpty())
        return tr("请输入用户名");
    return m_ui->passwordEdit->text().isEmpty() ? tr("请输入密码") : QString();
}

bool LogInDialog::isBlocked() const
{
    return m_session.users().state() == UserStore::Damaged || m_session.wait().count() > 0;
}

void LogInDialog::submit()
{
    m_session.logIn(m_ui->nameBox->currentText(), m_ui->passwordEdit->text(), this, [this](const QString& error) {
        if (!error.isEmpty())
            m_ui->passwordEdit->clear();
        finish(error);
        m_second.start();
        m_ui->passwordEdit->setFocus();
    });
}

void LogInDialog::retranslate()
{
    m_ui->retranslateUi(this);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("登录"));
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(tr("取消"));
}

void LogInDialog::countDown()
{
    m_session.wait().count() > 0 ? m_second.start() : m_second.stop();
    check();
}
