#include "dialogs/UserManagerDialog.h"

#include "accounts/LogInRules.h"
#include "accounts/UserSession.h"
#include "common/forms/DialogForm.h"
#include "dialogs/NewUserDialog.h"
#include "dialogs/PasswordDialog.h"
#include "ui_UserManagerDialog.h"

#include <QEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>

UserManagerDialog::UserManagerDialog(UserSession& session, LogInRules& rules, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::UserManagerDialog>())
    , m_session(session)
    , m_rules(rules)
    , m_roleMenu(new QMenu(this))
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->userTable->setColumnCount(2);
    DialogForm::prepare(this);
    m_ui->userTable->setColumnWidth(0, 230);
    m_ui->userTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_ui->userTable->verticalHeader()->setDefaultSectionSize(m_ui->addButton->minimumHeight());
    m_ui->roleButton->setMenu(m_roleMenu);
    connect(m_ui->userTable, &QTableWidget::itemSelectionChanged, this, &UserManagerDialog::updateButtons);
    connect(m_ui->addButton, &QPushButton::clicked, this, &UserManagerDialog::onAdd);
    connect(m_ui->passwordButton, &QPushButton::clicked, this, &UserManagerDialog::onPassword);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &UserManagerDialog::onRemove);
    m_ui->idleBox->setMaximum(LogInRules::maxIdleMinutes);
    showIdleLimit();
    connect(m_ui->idleBox, QOverload<int>::of(&QSpinBox::valueChanged), this, &UserManagerDialog::onIdleLimit);
    connect(&session, &UserSession::usersChanged, this, &UserManagerDialog::fillTable);
    connect(&session, &UserSession::currentUserChanged, this, &UserManagerDialog::onCurrentUserChanged);
    retranslate();
}

UserManagerDialog::~UserManagerDialog()
{
    DialogForm::takeDown(this);
}

void UserManagerDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QDialog::changeEvent(event);
}

void UserManagerDialog::retranslate()
{
    m_ui->retranslateUi(this);
    m_ui->buttonBox->button(QDialogButtonBox::Close)->setText(tr("关闭"));
    m_ui->userTable->setHorizontalHeaderLabels({tr("用户名"), tr("角色")});
    fillRoleMenu();
    fillTable();
}

void UserManagerDialog::fillTable()
{
    const QString selected = selectedName();
    const auto& accounts = m_session.users().accounts();
    m_ui->userTable->setRowCount(accounts.size());
    for (int row = 0; row < accounts.size(); ++row) {
        m_ui->userTable->setItem(row, 0, new QTableWidgetItem(accounts[row].name));
        m_ui->userTable->setItem(row, 1, new QTableWidgetItem(AccountRules::roleText(accounts[row].role)));
        if (accounts[row].name == selected)
            m_ui->userTable->selectRow(row);
    }
    m_ui->messageLabel->clear();
    updateButtons();
}

void UserManagerDialog::fillRoleMenu()
{
    m_roleMenu->clear();
    const auto roles = AccountRules::roles();
    for (const Role role : roles)
        connect(m_roleMenu->addAction(AccountRules::roleText(role)), &QAction::triggered, this,
                [this, role] { onRole(role); });
}

void UserManagerDialog::updateButtons()
{
    const QString name = selectedName();
    m_ui->roleButton->setEnabled(!name.isEmpty());
    m_ui->passwordButton->setEnabled(!name.isEmpty());
    m_ui->removeButton->setEnabled(!name.isEmpty() && name != m_session.userName());
}

void UserManagerDialog::onCurrentUserChanged(const QString&, int level)
{
    if (Role(level) != Role::Administrator)
        reject();
}

void UserManagerDialog::onAdd()
{
    (new NewUserDialog(m_session, NewUserDialog::AnyUser, this))->open();
}

void UserManagerDialog::onRole(Role role)
{
    QString error;
    m_session.setRole(selectedName(), role, &error);
    m_ui->messageLabel->say(Tone::Error, error);
}

void UserManagerDialog::onPassword()
{
    (new PasswordDialog(m_session, PasswordDialog::Reset, selectedName(), this))->open();
}

void UserManagerDialog::onRemove()
{
    const QString name = selectedName();
    const auto remove = [this, name] {
        QString error;
        m_session.removeUser(name, &error);
        m_ui->messageLabel->say(Tone::Error, error);
    };
    m_ui->question->ask(tr("确定要删除用户“%1”吗？").arg(name), {tr("删除"), remove});
}

void UserManagerDialog::onIdleLimit(int minutes)
{
    QString error;
    const std::chrono::minutes before = m_rules.idleLimit();
    if (m_rules.setIdleLimit(std::chrono::minutes(minutes), &error))
        emit idleLimitChanged(before, m_rules.idleLimit());
    else
        showIdleLimit();
    m_ui->messageLabel->say(Tone::Error, error);
}

void UserManagerDialog::showIdleLimit()
{
    const QSignalBlocker quiet(m_ui->idleBox);
    m_ui->idleBox->setValue(int(m_rules.idleLimit().count()));
}

QString UserManagerDialog::selectedName() const
{
    const auto selected = m_ui->userTable->selectedItems();
    return selected.isEmpty() ? QString() : m_ui->userTable->item(selected.first()->row(), 0)->text();
}
