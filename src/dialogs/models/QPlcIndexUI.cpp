#include "dialogs/models/QPlcIndexUI.h"

#include "common/forms/DialogForm.h"
#include "dialogs/models/PlcIndexModel.h"
#include "ui_QPlcIndexUI.h"

#include <QShortcut>
#include <QShowEvent>

QPlcIndexUI::QPlcIndexUI(ModelManager& models, const PlcIndexTable& stored, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QPlcIndexUI>())
    , m_table(new PlcIndexModel(models, stored, this))
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->table->setModel(m_table);
    m_ui->table->setItemDelegate(new PlcIndexDelegate(this));
    m_ui->table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    connectAll();
    judge();
}

QPlcIndexUI::~QPlcIndexUI()
{
    DialogForm::takeDown(this);
}

void QPlcIndexUI::connectAll()
{
    connect(m_table, &PlcIndexModel::dataChanged, this, &QPlcIndexUI::judge);
    connect(m_table, &PlcIndexModel::modelReset, this, &QPlcIndexUI::judge);
    connect(m_ui->clearButton, &QPushButton::clicked, this, &QPlcIndexUI::clearChosen);
    connect(m_ui->okButton, &QPushButton::clicked, this, &QPlcIndexUI::accept);
    connect(m_ui->applyButton, &QPushButton::clicked, this, &QPlcIndexUI::apply);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &QPlcIndexUI::reject);
    auto* clear = new QShortcut(Qt::Key_Delete, m_ui->table, nullptr, nullptr, Qt::WidgetShortcut);
    connect(clear, &QShortcut::activated, this, &QPlcIndexUI::clearChosen);
}

void QPlcIndexUI::setStations(const QStringList& stations)
{
    m_table->setStations(stations);
}

void QPlcIndexUI::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        m_table->forgetTyped();
    QDialog::showEvent(event);
}

void QPlcIndexUI::judge()
{
    const QString problem = m_table->draft().problem();
    const bool edited = m_table->draft().isEdited();
    m_ui->question->dismiss(); // its answer was about other values
    m_ui->okButton->setEnabled(problem.isEmpty());
    m_ui->applyButton->setEnabled(problem.isEmpty() && edited);
    if (!problem.isEmpty())
        m_ui->message->say(Tone::Error, problem);
    else
        m_ui->message->say(Tone::Warning, m_table->draft().warning());
}

void QPlcIndexUI::clearChosen()
{
    m_table->clear(m_ui->table->selectionModel()->selectedIndexes());
}

void QPlcIndexUI::accept()
{
    submit(After::Close);
}

void QPlcIndexUI::apply()
{
    submit(After::Stay);
}

void QPlcIndexUI::submit(After after)
{
    if (!m_table->draft().problem().isEmpty())
        return;
    if (!m_table->draft().isEdited() || !m_table->draft().isFileForeign())
        return store(after);
    m_ui->question->ask(
        tr("plcIndex.json 已被改动，与程序中的索引表不同。"), {tr("覆盖文件"), [this, after] { store(after); }},
        {m_table->draft().hasFileIndices() ? tr("显示文件中的索引") : QString(), [this] { m_table->typeFile(); }});
}

void QPlcIndexUI::store(After after)
{
    AuditChanges changes;
    QString error;
    if (!m_table->store(&changes, &error)) {
        m_ui->message->say(Tone::Error, tr("未能保存，索引表没有改变：%1").arg(error));
        return;
    }
    if (!changes.isEmpty())
        emit tablesApplied(changes);
    if (after == After::Close)
        QDialog::accept();
    else
        m_ui->message->say(m_ui->message->tone(), tr("已保存。%1").arg(m_table->draft().warning()));
}

void QPlcIndexUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        m_table->refresh();
    }
    QDialog::changeEvent(event);
}
