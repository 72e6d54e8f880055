#include "dialogs/models/QModelEditUI.h"

#include "common/forms/DialogForm.h"
#include "ui_QModelEditUI.h"
#include "workflow/ModelManager.h"

#include <QEvent>

QModelEditUI::QModelEditUI(const ModelManager& models, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QModelEditUI>())
    , m_models(models)
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    connect(m_ui->nameEdit, &QLineEdit::textChanged, this, &QModelEditUI::judge);
    connect(m_ui->indexEdit, &QLineEdit::textChanged, this, &QModelEditUI::judge);
    connect(m_ui->okButton, &QPushButton::clicked, this, &QModelEditUI::accept);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &QModelEditUI::reject);
    connect(&m_models, &ModelManager::changed, this, &QModelEditUI::judge); // another dialog may take a name
}

QModelEditUI::~QModelEditUI()
{
    DialogForm::takeDown(this);
}

void QModelEditUI::begin(const Task& task)
{
    m_task = task;
    retranslate();
    m_ui->nameEdit->setText(task.entry.name);
    m_ui->indexEdit->setValue(task.entry.index);
    m_ui->calibratedBox->setChecked(task.entry.calibrated);
    judge();
    open();
    m_ui->nameEdit->selectAll();
    m_ui->nameEdit->setFocus();
}

ModelEntry QModelEditUI::typed() const
{
    return {m_ui->nameEdit->text(), m_ui->indexEdit->value(), m_ui->calibratedBox->isChecked()};
}

bool QModelEditUI::canBeNamed(const QString& name, QString* problem) const
{
    const bool kept = !name.isEmpty() && name == m_task.ownName;
    return kept || m_models.isNewName(name, problem, m_task.ownName);
}

QString QModelEditUI::problem() const
{
    QString problem;
    const ModelEntry entry = typed();
    if (!m_task.ownName.isEmpty() && !m_models.contains(m_task.ownName))
        return tr("型号%1已不存在").arg(m_task.ownName);
    if (!canBeNamed(entry.name, &problem))
        return problem;
    problem = m_ui->indexEdit->problem();
    if (!problem.isEmpty())
        return tr("PLC索引：%1").arg(problem);
    const bool kept = !m_task.ownName.isEmpty() && entry.index == m_task.entry.index;
    if (!kept)
        m_models.isFreeIndex(entry.index, m_task.ownName, &problem);
    return problem;
}

void QModelEditUI::judge()
{
    const QString name = m_ui->nameEdit->text();
    setTone(m_ui->nameEdit, canBeNamed(name, nullptr) ? Tone::Plain : Tone::Error);
    const QString problem = this->problem();
    m_ui->okButton->setEnabled(problem.isEmpty());
    if (!problem.isEmpty())
        m_ui->message->say(Tone::Error, problem);
    else
        m_ui->message->say(Tone::Warning, m_task.remark ? m_task.remark(name) : QString());
}

void QModelEditUI::accept()
{
    if (!problem().isEmpty())
        return;
    QString error;
    if (m_task.submit(typed(), &error))
        QDialog::accept();
    else
        m_ui->message->say(Tone::Error, error);
}

void QModelEditUI::retranslate()
{
    m_ui->retranslateUi(this);
    switch (m_task.purpose) {
    case Purpose::Add:
        return setWindowTitle(tr("添加型号"));
    case Purpose::Modify:
        return setWindowTitle(tr("修改型号"));
    case Purpose::Copy:
        return setWindowTitle(tr("复制型号"));
    case Purpose::Import:
        return setWindowTitle(tr("导入型号"));
    }
}

void QModelEditUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
        judge();
    }
    QDialog::changeEvent(event);
}
