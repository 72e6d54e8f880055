#include "BatchPanel.h"

#include "batch/BatchTable.h"
#include "common/CsvFile.h"
#include "model/ExampleStore.h"
#include "model/ModelDrafts.h"
#include "model/ParameterRules.h"
#include "ui_BatchPanel.h"

#include <valvecell/HomeFiles.h>

#include <QFileDialog>

namespace {

constexpr int modelRole = Qt::UserRole + 1;
constexpr int widestColumn = 150;
constexpr int titleLength = 8; // characters that fit above a column

QString archive()
{
    return HomeFiles::home() + QStringLiteral("/DBFiles/SrcImages");
}

} // namespace

void NotableRows::setOnlyNotable(bool only)
{
    m_only = only;
    invalidateFilter();
}

bool NotableRows::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    return !m_only || sourceModel()->index(row, 0, parent).data(BatchTable::notableRole).toBool();
}

BatchPanel::BatchPanel(IEngine* engine, ModelDrafts* drafts, ExampleStore* examples, QWidget* parent)
    : QWidget(parent)
    , m_drafts(drafts)
    , m_examples(examples)
    , m_ui(std::make_unique<Ui::BatchPanel>())
    , m_runner(new TaskRunner(engine, this))
    , m_batch(new BatchRunner(m_runner, this))
    , m_table(new BatchTable(this))
    , m_rows(new NotableRows(this))
{
    m_ui->setupUi(this);
    setUpTable();
    connectAll();
    updateState();
}

BatchPanel::~BatchPanel() = default;

void BatchPanel::setUpTable()
{
    m_rows->setSourceModel(m_table);
    m_rows->setSortRole(BatchTable::sortRole);
    m_ui->table->setModel(m_rows);
    m_ui->table->sortByColumn(-1, Qt::AscendingOrder);
    // Beside the image's name; last in the file, where other programs count the columns.
    m_ui->table->horizontalHeader()->moveSection(BatchTable::VerdictColumn, 1);
    m_ui->table->setColumnHidden(BatchTable::VerdictColumn, !m_examples->offered());
    m_ui->table->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_ui->table->addActions(m_ui->review->answers());
    m_ui->review->setVisible(m_examples->offered());
    m_ui->table->horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    m_ui->table->verticalHeader()->hide();
    QSizePolicy policy = m_ui->progress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->progress->setSizePolicy(policy);
    m_ui->table->verticalHeader()->setDefaultSectionSize(24);
}

void BatchPanel::connectAll()
{
    connect(m_ui->folderButton, &QPushButton::clicked, this, &BatchPanel::chooseFolder);
    connect(m_ui->startButton, &QPushButton::clicked, this, &BatchPanel::toggle);
    connect(m_ui->exportButton, &QPushButton::clicked, this, &BatchPanel::chooseExport);
    connect(m_ui->notableBox, &QCheckBox::toggled, m_rows, &NotableRows::setOnlyNotable);
    connect(m_ui->dayBox, QOverload<int>::of(&QComboBox::activated), this, [this](int row) {
        if (row > 0)
            setFolder(archive() + QLatin1Char('/') + m_ui->dayBox->itemText(row));
    });
    connect(m_ui->table, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        emit imageWanted(m_table->row(m_rows->mapToSource(index).row()).path);
    });
    connect(m_ui->table->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &BatchPanel::review);
    connect(m_ui->review, &ReviewBar::judged, this, &BatchPanel::learn);
    connect(m_examples, &ExampleStore::learned, this,
            [this](const ModelId& id, IModelExamples::Kind kind, const QString& path) {
                if (id != m_ran)
                    return;
                m_table->setVerdict(path, kind == IModelExamples::Kind::Hole ? BatchRow::Verdict::Hole
                                                                             : BatchRow::Verdict::Rejected);
                m_ui->table->resizeColumnToContents(BatchTable::VerdictColumn);
            });
    connect(m_batch, &BatchRunner::counted, this, [this](int images) { m_ui->progress->setRange(0, images); });
    connect(m_batch, &BatchRunner::rowDone, this, &BatchPanel::takeRow);
    connect(m_batch, &BatchRunner::finished, this, &BatchPanel::finish);
    connect(m_drafts, &ModelDrafts::changed, this, &BatchPanel::listOpponents);
    connect(m_drafts, &ModelDrafts::listChanged, this, &BatchPanel::listOpponents);
}

void BatchPanel::setModel(const ModelId& id)
{
    m_id = id;
    listOpponents();
}

void BatchPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    listDays();
}

void BatchPanel::listDays()
{
    m_ui->dayBox->clear();
    m_ui->dayBox->addItem(tr("归档日期"));
    m_ui->dayBox->addItems(QDir(archive()).entryList({QStringLiteral("*-*-*")}, QDir::Dirs, QDir::Reversed));
    m_ui->dayBox->setVisible(m_ui->dayBox->count() > 1);
}

void BatchPanel::addOpponent(const QString& text, Against kind, const QString& model)
{
    m_ui->againstBox->addItem(text, static_cast<int>(kind));
    m_ui->againstBox->setItemData(m_ui->againstBox->count() - 1, model, modelRole);
}

void BatchPanel::listOpponents()
{
    const QString before = m_ui->againstBox->currentText();
    const bool hadDraft = m_ui->againstBox->findData(static_cast<int>(Against::Draft)) >= 0;
    m_ui->againstBox->clear();
    addOpponent(tr("不对比"), Against::Nothing);
    if (m_runner->runsUnsaved() && m_drafts->isUnsaved(m_id))
        addOpponent(tr("编辑中的参数"), Against::Draft);
    const QStringList models = m_drafts->models(m_id.solution);
    for (const QString& model : models) {
        if (model != m_id.model)
            addOpponent(tr("型号 %1").arg(model), Against::Model, model);
    }
    const int row = m_ui->againstBox->findText(before);
    const int draft = m_ui->againstBox->findData(static_cast<int>(Against::Draft));
    // The first edit is what one wants to compare with; a choice made since then stays.
    m_ui->againstBox->setCurrentIndex(draft >= 0 && !hadDraft ? draft : qMax(0, row));
    updateState();
}

BatchPanel::Against BatchPanel::against() const
{
    return static_cast<Against>(m_ui->againstBox->currentData().toInt());
}

Recipe BatchPanel::storedRecipe(const ModelId& id) const
{
    return {id, m_drafts->stored(id)};
}

BatchRunner::Plan BatchPanel::plan() const
{
    BatchRunner::Plan plan;
    plan.folder = m_folder;
    plan.first = storedRecipe(m_id);
    plan.compare = against() != Against::Nothing;
    if (against() == Against::Draft)
        plan.second = {m_id, m_drafts->parameters(m_id)};
    else
        plan.second = storedRecipe({m_id.solution, m_ui->againstBox->currentData(modelRole).toString()});
    return plan;
}

void BatchPanel::chooseFolder()
{
    const QString from = !m_folder.isEmpty() ? m_folder : QDir(archive()).exists() ? archive() : HomeFiles::home();
    auto* dialog = new QFileDialog(this, tr("选择图像文件夹"), from);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    connect(dialog, &QFileDialog::fileSelected, this, &BatchPanel::setFolder);
    dialog->open();
}

void BatchPanel::setFolder(const QString& folder)
{
    m_folder = QDir(folder).absolutePath();
    m_ui->folderLabel->setText(QDir::toNativeSeparators(m_folder));
    m_ui->folderLabel->setToolTip(m_ui->folderLabel->text());
    updateState();
}

void BatchPanel::stop()
{
    m_batch->stop();
}

void BatchPanel::toggle()
{
    if (m_batch->isRunning())
        stop();
    else
        start();
}

void BatchPanel::start()
{
    if (against() == Against::Draft && !ParameterRules::problems(m_drafts->parameters(m_id)).isEmpty()) {
        emit failed(tr("编辑中的参数有误，请先改正"));
        return;
    }
    const bool compare = against() != Against::Nothing;
    m_ran = m_id;
    m_ui->review->setTeachable(!m_drafts->isBuiltIn(m_ran));
    m_ui->review->clear();
    m_table->clear(tr("当前"), against() == Against::Draft
                                   ? tr("编辑")
                                   : m_ui->againstBox->currentData(modelRole).toString().left(titleLength));
    for (int column = 0; column < BatchTable::ColumnCount; ++column) {
        if (BatchTable::isOfComparison(column))
            m_ui->table->setColumnHidden(column, !compare);
    }
    m_ui->progress->setRange(0, 0);
    m_ui->progress->setValue(0);
    m_ui->summary->clear();
    m_batch->start(plan());
    updateState();
}

void BatchPanel::review()
{
    const QModelIndex index = m_ui->table->currentIndex();
    if (index.isValid())
        m_ui->review->setRow(m_table->row(m_rows->mapToSource(index).row()));
    else
        m_ui->review->clear();
}

void BatchPanel::learn(IModelExamples::Kind kind)
{
    const QModelIndex index = m_ui->table->currentIndex();
    if (!index.isValid())
        return;
    const BatchRow& row = m_table->row(m_rows->mapToSource(index).row());
    m_examples->learn(m_ran, kind, m_drafts->stored(m_ran), {row.path, {}, row.judged().hole});
    if (index.row() + 1 < m_rows->rowCount())
        m_ui->table->selectRow(index.row() + 1);
}

void BatchPanel::takeRow(const BatchRow& row)
{
    m_table->append(row);
    m_ui->progress->setValue(m_table->rowCount());
    m_ui->summary->setText(m_table->summary().text());
    if (m_table->rowCount() == 1)
        fitColumns();
}

void BatchPanel::fitColumns()
{
    m_ui->table->resizeColumnsToContents();
    for (int column = 0; column < BatchTable::ColumnCount; ++column)
        m_ui->table->setColumnWidth(column, std::min(m_ui->table->columnWidth(column),
                                                     column == BatchTable::Image ? 2 * widestColumn : widestColumn));
}

void BatchPanel::finish()
{
    fitColumns();
    if (m_table->rowCount() == 0)
        m_ui->summary->setText(tr("文件夹中没有图像"));
    updateState();
}

void BatchPanel::chooseExport()
{
    auto* dialog = new QFileDialog(this, tr("导出"), QFileInfo(m_folder).path());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    dialog->setNameFilter(QStringLiteral("CSV (*.csv)"));
    connect(dialog, &QFileDialog::fileSelected, this, &BatchPanel::exportTo);
    dialog->open();
}

void BatchPanel::exportTo(const QString& path)
{
    const auto work = [path, lines = CsvFile::linesOf(*m_rows)] { return CsvFile::write(path, lines); };
    m_background.run(work, [this, path](const QString& error) {
        if (error.isEmpty())
            emit done(tr("已导出 %1").arg(QDir::toNativeSeparators(path)));
        else
            emit failed(tr("未能导出 %1").arg(error));
    });
}

void BatchPanel::updateState()
{
    const bool running = m_batch->isRunning();
    m_ui->startButton->setText(running ? tr("停止") : tr("开始复检"));
    m_ui->startButton->setEnabled(running || (!m_id.isNull() && !m_folder.isEmpty()));
    m_ui->againstBox->setEnabled(!running);
    m_ui->modelLabel->setText(m_id.isNull() ? QString() : tr("已保存的“%1”，对比").arg(m_id.model));
    m_ui->progress->setVisible(running);
    m_ui->exportButton->setEnabled(!running && m_table->rowCount() > 0);
}
