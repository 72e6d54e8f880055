#include "ModelPanel.h"

#include "common/LookAlike.h"
#include "model/ModelDrafts.h"
#include "ui_ModelPanel.h"

#include <valvecell/IEngine.h>

#include <QSignalBlocker>

namespace {

constexpr int nameRole = Qt::UserRole;

} // namespace

ModelPanel::ModelPanel(ITaskList* solutions, ModelDrafts* drafts, QWidget* parent)
    : QWidget(parent)
    , m_solutions(solutions)
    , m_drafts(drafts)
    , m_ui(std::make_unique<Ui::ModelPanel>())
{
    m_ui->setupUi(this);
    connectAll();
    refresh();
}

ModelPanel::~ModelPanel() = default;

void ModelPanel::connectAll()
{
    connect(m_ui->solutionBox, &QComboBox::currentTextChanged, this, [this] { refreshModels(QString()); });
    connect(m_ui->modelList, &QListWidget::currentRowChanged, this, &ModelPanel::showCurrent);
    connect(m_drafts, &ModelDrafts::changed, this, &ModelPanel::updateMarks);
    connect(m_drafts, &ModelDrafts::listChanged, this, &ModelPanel::refresh);
    connect(m_ui->addSolutionButton, &QToolButton::clicked, this, &ModelPanel::askSolution);
    connect(m_ui->addButton, &QPushButton::clicked, this, [this] {
        const QString solution = current().solution;
        askNewModel(tr("新型号的名称："), freeName(tr("新型号")),
                    [this, solution](const QString& name, QString* error) {
                        return m_drafts->add({solution, name}, m_drafts->freshParameters(solution), error);
                    });
    });
    connect(m_ui->copyButton, &QPushButton::clicked, this, [this] {
        const ModelId id = current();
        askNewModel(tr("“%1”副本的名称：").arg(id.model), freeName(tr("%1 副本").arg(id.model)),
                    [this, id](const QString& name, QString* error) { return m_drafts->copy(id, name, error); });
    });
    connect(m_ui->renameButton, &QPushButton::clicked, this, &ModelPanel::askRename);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &ModelPanel::askRemove);
}

ModelId ModelPanel::current() const
{
    const QListWidgetItem* item = m_ui->modelList->currentItem();
    return {m_ui->solutionBox->currentText(), item ? item->data(nameRole).toString() : QString()};
}

void ModelPanel::select(const ModelId& id)
{
    if (!m_drafts->models(id.solution).contains(id.model))
        return;
    m_ui->solutionBox->setCurrentText(id.solution);
    refreshModels(id.model);
}

void ModelPanel::refresh()
{
    const ModelId before = current();
    {
        const QSignalBlocker quiet(m_ui->solutionBox);
        m_ui->solutionBox->clear();
        m_ui->solutionBox->addItems(m_solutions->list());
        const int row = m_ui->solutionBox->findText(before.solution);
        m_ui->solutionBox->setCurrentIndex(row < 0 && m_ui->solutionBox->count() > 0 ? 0 : row);
    }
    refreshModels(before.model);
}

void ModelPanel::refreshModels(const QString& wanted)
{
    m_ui->ask->dismiss();
    const QStringList models = m_drafts->models(m_ui->solutionBox->currentText());
    {
        const QSignalBlocker quiet(m_ui->modelList);
        m_ui->modelList->clear();
        for (const QString& model : models) {
            auto* item = new QListWidgetItem(model, m_ui->modelList);
            item->setData(nameRole, model);
        }
        m_ui->modelList->setCurrentRow(models.isEmpty() ? -1 : qMax(0, models.indexOf(wanted)));
    }
    updateMarks();
    showCurrent();
}

void ModelPanel::showModel(int row)
{
    QListWidgetItem* item = m_ui->modelList->item(row);
    const ModelId id{m_ui->solutionBox->currentText(), item->data(nameRole).toString()};
    QFont font = m_ui->modelList->font();
    font.setBold(m_drafts->isUnsaved(id));
    item->setFont(font);
    item->setText(m_drafts->isBuiltIn(id)   ? tr("%1（内置，只读）").arg(id.model)
                  : m_drafts->isUnsaved(id) ? tr("%1 *未保存").arg(id.model)
                                            : id.model);
}

void ModelPanel::updateMarks()
{
    for (int row = 0; row < m_ui->modelList->count(); ++row)
        showModel(row);
}

void ModelPanel::showCurrent()
{
    const ModelId id = current();
    const bool own = !id.isNull() && !m_drafts->isBuiltIn(id);
    m_ui->addButton->setEnabled(!id.solution.isEmpty());
    m_ui->copyButton->setEnabled(!id.isNull());
    m_ui->renameButton->setEnabled(own);
    m_ui->removeButton->setEnabled(own);
    if (id != m_shown)
        m_ui->ask->dismiss();
    m_shown = id;
    emit modelChosen(id);
}

QString ModelPanel::freeName(const QString& stem) const
{
    const QString solution = current().solution;
    QString name = stem;
    for (int i = 2; !m_drafts->nameProblem(solution, name).isEmpty() && i < 1000; ++i)
        name = QStringLiteral("%1 %2").arg(stem).arg(i);
    return name;
}

void ModelPanel::report(bool succeeded, const QString& message, const QString& error)
{
    if (succeeded)
        emit done(message);
    else
        emit failed(error);
}

void ModelPanel::askNewModel(const QString& question, const QString& proposal, const Store& store)
{
    const QString solution = current().solution;
    const auto create = [this, solution, store](const QString& name) {
        QString error;
        const bool added = store(name, &error);
        report(added, tr("已新建型号“%1”").arg(name), error);
        select({solution, name});
    };
    m_ui->ask->askName(question, proposal, {tr("新建"), create},
                       [this, solution](const QString& name) { return m_drafts->nameProblem(solution, name); });
}

void ModelPanel::askRename()
{
    const ModelId id = current();
    const auto rename = [this, id](const QString& name) {
        QString error;
        const bool renamed = m_drafts->rename(id, name, &error);
        report(renamed, tr("“%1”已改名为“%2”，请同时更新机型表").arg(id.model, name), error);
        select(renamed ? ModelId{id.solution, name} : id);
    };
    const auto problem = [this, id](const QString& name) {
        return name == id.model ? tr("请输入新的名称") : m_drafts->nameProblem(id.solution, name);
    };
    m_ui->ask->askName(tr("“%1”的新名称：").arg(id.model), id.model, {tr("改名"), rename}, problem);
}

void ModelPanel::askRemove()
{
    const ModelId id = current();
    m_ui->ask->ask(tr("删除型号“%1”？此操作不能撤销。").arg(id.model),
                   {tr("删除"), [this, id] {
                        QString error;
                        const bool removed = m_drafts->remove(id, &error);
                        report(removed, tr("已删除型号“%1”").arg(id.model), error);
                    }});
}

void ModelPanel::askSolution()
{
    const auto create = [this](const QString& name) {
        QString error;
        const bool added = m_drafts->addSolution(name, &error);
        if (added)
            m_ui->solutionBox->setCurrentText(name);
        report(added, tr("已新建方案“%1”，程序重新启动后可供工位使用").arg(name), error);
    };
    const auto problem = [this](const QString& name) {
        return name.trimmed().isEmpty() || LookAlike::hasInvisible(name) ? tr("请输入名称")
               : !LookAlike::find(m_solutions->list(), name).isEmpty()   ? tr("已有此方案")
                                                                         : QString();
    };
    m_ui->ask->askName(tr("新方案的名称："), QString(), {tr("新建"), create}, problem);
}
