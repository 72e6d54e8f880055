#include "dialogs/cameras/QCameraManagerUI.h"

#include "common/LookAlike.h"
#include "common/forms/DialogForm.h"
#include "dialogs/cameras/CameraDraft.h"
#include "dialogs/cameras/QCameraEditUI.h"
#include "ui_QCameraManagerUI.h"

#include <QShowEvent>

namespace {
constexpr int listTickMs = 1000;
} // namespace

QCameraManagerUI::QCameraManagerUI(ICoreCtrl& core, const ksGlobalConfig& config, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QCameraManagerUI>())
    , m_cameras(core, config)
    , m_draft(new CameraDraft(m_cameras, this))
    , m_edit(new QCameraEditUI(m_cameras, this))
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->table->setModel(m_draft);
    m_ui->table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->table->horizontalHeader()->setSectionResizeMode(CameraDraft::Note, QHeaderView::Stretch);
    m_ui->addButton->setVisible(m_cameras.list != nullptr);
    m_ui->modifyButton->setVisible(m_cameras.list != nullptr);
    m_ui->removeButton->setVisible(m_cameras.list != nullptr);
    m_ui->settingsButton->setVisible(m_cameras.settings != nullptr);
    m_tick.setInterval(listTickMs);
    connectAll();
    judge();
}

QCameraManagerUI::~QCameraManagerUI()
{
    DialogForm::takeDown(this);
}

void QCameraManagerUI::connectAll()
{
    connect(&m_tick, &QTimer::timeout, m_draft, &CameraDraft::refresh);
    connect(m_draft, &CameraDraft::dataChanged, this, &QCameraManagerUI::showChosen);
    connect(m_draft, &CameraDraft::rowsRemoved, this, &QCameraManagerUI::judge);
    connect(m_draft, &CameraDraft::rowsInserted, this, &QCameraManagerUI::judge);
    connect(m_draft, &CameraDraft::modelReset, this, &QCameraManagerUI::judge);
    connect(m_ui->table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &QCameraManagerUI::showChosen);
    connect(m_ui->table, &QTableView::doubleClicked, m_ui->settingsButton, &QPushButton::click);
    connect(m_ui->addButton, &QPushButton::clicked, this, &QCameraManagerUI::add);
    connect(m_ui->modifyButton, &QPushButton::clicked, this, &QCameraManagerUI::modify);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &QCameraManagerUI::removeOrKeep);
    connect(m_ui->settingsButton, &QPushButton::clicked, this, &QCameraManagerUI::openSettings);
    connect(m_ui->okButton, &QPushButton::clicked, this, &QCameraManagerUI::accept);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &QCameraManagerUI::reject);
    connect(m_ui->applyButton, &QPushButton::clicked, this, &QCameraManagerUI::apply);
    DialogForm::addShortcut(this, Qt::Key_Insert, m_ui->addButton);
    DialogForm::addShortcut(this, Qt::Key_F2, m_ui->modifyButton);
    DialogForm::addShortcut(this, Qt::Key_Delete, m_ui->removeButton);
}

void QCameraManagerUI::load()
{
    beginEdit();
    m_draft->reset();
    m_ui->table->selectRow(0);
}

void QCameraManagerUI::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        load();
    m_tick.start();
    QDialog::showEvent(event);
}

void QCameraManagerUI::hideEvent(QHideEvent* event)
{
    m_tick.stop();
    QDialog::hideEvent(event);
}

int QCameraManagerUI::chosen() const
{
    const QModelIndexList rows = m_ui->table->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void QCameraManagerUI::showChosen()
{
    const int row = chosen();
    const bool any = row >= 0 && row < m_draft->rowCount();
    const auto mark = any ? m_draft->row(row).mark : CameraDraft::Mark::Kept;
    const bool removed = mark == CameraDraft::Mark::Removed;
    m_ui->modifyButton->setEnabled(any && !removed);
    m_ui->removeButton->setEnabled(any);
    m_ui->removeButton->setText(removed ? tr("恢复(&D)") : tr("删除(&D)"));
    m_ui->settingsButton->setEnabled(any && mark == CameraDraft::Mark::Kept);
    judge();
}

void QCameraManagerUI::judge()
{
    const QString problem = m_cameras.list ? m_draft->problem() : QString();
    const QString orphans = m_draft->orphans();
    const bool edited = m_draft->isEdited();
    m_ui->okButton->setEnabled(problem.isEmpty());
    m_ui->applyButton->setEnabled(problem.isEmpty() && edited);
    const QString wrong = problem.isEmpty() ? m_failure : problem;
    if (!wrong.isEmpty())
        m_ui->message->say(Tone::Error, wrong);
    else if (!orphans.isEmpty())
        m_ui->message->say(Tone::Warning, tr("%1的相机将被删除").arg(orphans));
    else if (edited && (m_draft->count() == 1) != (m_cameras.core.cameraKeys().size() == 1))
        m_ui->message->say(Tone::Plain, tr("重新启动后窗口按新的相机数量显示工位"));
    else if (!m_cameras.list)
        m_ui->message->say(Tone::Plain, tr("此核心控制模块的相机不能在这里添加和删除"));
    else if (edited || m_ui->message->tone() != Tone::Plain)
        m_ui->message->clear(); // what was said of the last storing stays until something is edited
}

QString QCameraManagerUI::keyProblem(const QString& key) const
{
    QString reason;
    if (!m_cameras.list->isNewKey(key, &reason))
        return reason;
    const QString alike = LookAlike::find(m_draft->keys(), key);
    if (alike.isEmpty())
        return {};
    return alike == key ? tr("已有名为“%1”的相机").arg(key) : tr("与相机“%1”看起来相同").arg(alike);
}

/// What was asked and what failed was about another list.
void QCameraManagerUI::beginEdit()
{
    m_ui->question->dismiss();
    m_failure.clear();
}

void QCameraManagerUI::add()
{
    const QVector<CameraType> driven = m_cameras.list->drivenTypes();
    QCameraEditUI::Task task;
    task.entry.type = driven.isEmpty() ? CameraType::Unknown : driven.first();
    task.keyProblem = [this](const QString& key) { return keyProblem(key); };
    task.submit = [this](const CameraEntry& entry) {
        m_draft->add(entry);
        m_ui->table->selectRow(m_draft->rowCount() - 1);
    };
    beginEdit();
    m_edit->begin(task);
}

void QCameraManagerUI::modify()
{
    const int row = chosen();
    if (row < 0)
        return;
    const CameraDraft::Row& now = m_draft->row(row);
    const QString oldKey = now.entry.key;
    QCameraEditUI::Task task;
    task.isNew = now.mark == CameraDraft::Mark::Added;
    task.entry = now.entry;
    task.keyProblem = [this, oldKey](const QString& key) { return key == oldKey ? QString() : keyProblem(key); };
    task.submit = [this, oldKey](const CameraEntry& entry) {
        const int at = m_draft->find(oldKey); // the list may have changed while the fields were open
        if (at >= 0)
            m_draft->change(at, entry);
        else
            m_failure = tr("相机“%1”已不存在").arg(oldKey);
        judge();
    };
    beginEdit();
    m_edit->begin(task);
}

void QCameraManagerUI::removeOrKeep()
{
    beginEdit();
    if (chosen() >= 0)
        m_draft->toggleRemoved(chosen());
}

void QCameraManagerUI::openSettings()
{
    const int row = chosen();
    if (row >= 0 && m_draft->row(row).mark == CameraDraft::Mark::Kept)
        emit settingsWanted(m_draft->row(row).entry.key);
}

void QCameraManagerUI::accept()
{
    submit(After::Close);
}

void QCameraManagerUI::apply()
{
    submit(After::Stay);
}

void QCameraManagerUI::submit(After after)
{
    m_draft->refresh(); // others may have changed the cameras since the last tick
    if (!m_ui->okButton->isEnabled())
        return;
    const QString orphans = m_draft->orphans();
    if (!m_draft->isEdited() && after == After::Close)
        return QDialog::accept();
    if (orphans.isEmpty())
        return store(after);
    m_ui->question->ask(tr("删除后%1不能拍照，直到在系统设置中为它选择其他相机。").arg(orphans),
                        {tr("删除"), [this, after] { store(after); }});
}

void QCameraManagerUI::store(After after)
{
    AuditChanges changes;
    QString error;
    const int before = m_cameras.core.cameraKeys().size();
    if (!m_draft->apply(&changes, &error)) {
        m_failure = tr("未能保存，相机没有改变：%1").arg(error);
        return judge();
    }
    m_failure.clear();
    const int now = m_cameras.core.cameraKeys().size();
    emit camerasApplied(changes);
    if (after == After::Close)
        return QDialog::accept();
    const bool otherForm = (before == 1) != (now == 1);
    m_ui->message->say(Tone::Plain, otherForm ? tr("已保存；重新启动后窗口按新的相机数量显示工位") : tr("已保存"));
}

void QCameraManagerUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        m_ui->message->clear();
        m_failure.clear();
        emit m_draft->headerDataChanged(Qt::Horizontal, 0, CameraDraft::columns - 1);
        m_draft->refresh();
        showChosen();
    }
    QDialog::changeEvent(event);
}
