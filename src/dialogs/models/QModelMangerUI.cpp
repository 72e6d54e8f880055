#include "dialogs/models/QModelMangerUI.h"

#include "common/forms/DialogForm.h"
#include "db/SqlText.h"
#include "dialogs/ModelView.h"
#include "ui_QModelMangerUI.h"
#include "workflow/ModelManager.h"

#include <QEvent>
#include <QFileDialog>

namespace {

const QString modelSuffix = QStringLiteral("json");

QString listed(const QStringList& names)
{
    return names.join(QModelMangerUI::tr("、"));
}

/// The list of models, with a column of what answers depend on: whether the engine has been taught the model.
class TaughtModels : public ModelModel
{
public:
    TaughtModels(const IModelSource& source, const EngineModels& engine)
        : ModelModel(source)
        , m_source(source)
        , m_engine(engine)
    {
    }

    int columnCount(const QModelIndex& parent = {}) const override
    {
        return ModelModel::columnCount(parent) + (m_engine.hasStore() && !parent.isValid() ? 1 : 0);
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        // Of a model that is not taught either, the mark would say the same twice.
        if (index.column() == calibratedColumn && role == Qt::DisplayRole && !m_source.isCalibrated(index.row()) &&
            m_engine.hasStore() && !isTaught(index.row()))
            return {};
        if (index.column() != taughtColumn)
            return ModelModel::data(index, role);
        if (role == Qt::DisplayRole)
            return isTaught(index.row()) ? QModelMangerUI::tr("已示教") : QModelMangerUI::tr("未示教");
        if (role == Qt::ForegroundRole)
            return ModelModel::data(index.siblingAtColumn(0), role);
        return role == Qt::BackgroundRole ? ModelModel::data(index.siblingAtColumn(0), role) : QVariant();
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override
    {
        const bool own = section == taughtColumn && orientation == Qt::Horizontal && role == Qt::DisplayRole;
        return own ? QModelMangerUI::tr("引擎参数") : ModelModel::headerData(section, orientation, role);
    }

private:
    static constexpr int calibratedColumn = 2;
    static constexpr int taughtColumn = 3;

    bool isTaught(int row) const { return m_engine.isTaught(m_source.modelName(row)); }

    const IModelSource& m_source;
    const EngineModels& m_engine;
};

} // namespace

QModelMangerUI::QModelMangerUI(ModelManager& models, IEngine* engine, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QModelMangerUI>())
    , m_models(models)
    , m_actions(models, engine)
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_view = new ModelView(m_ui->table, new TaughtModels(models, m_actions.engine()), this);
    m_ui->table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_edit = new QModelEditUI(models, this);
    connectAll();
    refresh();
}

QModelMangerUI::~QModelMangerUI()
{
    DialogForm::takeDown(this);
}

void QModelMangerUI::connectAll()
{
    connect(&m_models, &ModelManager::changed, this, &QModelMangerUI::refresh);
    connect(&m_models, &ModelManager::currentChanged, m_view->model(), &ModelModel::refreshCurrent);
    connect(m_ui->table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &QModelMangerUI::showChosen);
    connect(m_ui->table, &QTableView::doubleClicked, this, &QModelMangerUI::modify);
    connect(m_ui->addButton, &QPushButton::clicked, this, &QModelMangerUI::add);
    connect(m_ui->modifyButton, &QPushButton::clicked, this, &QModelMangerUI::modify);
    connect(m_ui->copyButton, &QPushButton::clicked, this, &QModelMangerUI::copy);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &QModelMangerUI::askRemove);
    connect(m_ui->importButton, &QPushButton::clicked, this, &QModelMangerUI::askImport);
    connect(m_ui->exportButton, &QPushButton::clicked, this, &QModelMangerUI::askExport);
    connect(m_ui->indexButton, &QPushButton::clicked, this, &QModelMangerUI::indexTableWanted);
    connect(m_ui->teachButton, &QPushButton::clicked, this, [this] {
        const QString name = chosen();
        emit teachingWanted(m_actions.engine().isTaught(name) ? QString() : name);
    });
    connect(m_ui->libraryButton, &QPushButton::clicked, this, &QModelMangerUI::libraryWanted);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QModelMangerUI::reject);
    DialogForm::addShortcut(this, Qt::Key_Insert, m_ui->addButton);
    DialogForm::addShortcut(this, Qt::Key_F2, m_ui->modifyButton);
    DialogForm::addShortcut(this, Qt::Key_Delete, m_ui->removeButton);
}

void QModelMangerUI::refresh()
{
    const QString before = chosen();
    m_view->model()->refresh();
    choose(before);
    showChosen();
}

QString QModelMangerUI::chosen() const
{
    const QModelIndexList rows = m_ui->table->selectionModel()->selectedRows();
    return rows.isEmpty() ? QString() : rows.first().data().toString();
}

void QModelMangerUI::choose(const QString& name)
{
    for (int row = 0; row < m_models.modelCount(); ++row) {
        if (m_models.modelName(row) == name)
            return m_ui->table->selectRow(row);
    }
}

void QModelMangerUI::showChosen()
{
    const QString name = chosen();
    for (QPushButton* button : {m_ui->modifyButton, m_ui->copyButton, m_ui->removeButton, m_ui->exportButton})
        button->setEnabled(!name.isEmpty());
    m_ui->question->dismiss();
    m_ui->message->clear();
    m_ui->parameters->setVisible(m_actions.engine().hasStore());
    const QStringList having = m_actions.engine().parameters(name).keys();
    if (m_models.modelCount() == 0)
        m_ui->parameters->setText(tr("还没有型号"));
    else if (name.isEmpty())
        m_ui->parameters->setText(QString());
    else
        m_ui->parameters->setText(having.isEmpty() ? tr("引擎中没有此型号的参数")
                                                   : tr("引擎参数：%1").arg(listed(having)));
}

void QModelMangerUI::begin(QModelEditUI::Task task)
{
    const auto submit = task.submit;
    task.submit = [this, submit](const ModelEntry& entry, QString* error) {
        if (!submit(entry, error))
            return false;
        m_view->model()->refresh();
        done(entry.name, saved(entry.name));
        return true;
    };
    m_edit->begin(task);
}

/// What was done, and what is left to do before a station can run the model.
QString QModelMangerUI::saved(const QString& name) const
{
    const EngineModels& engine = m_actions.engine();
    if (!engine.hasStore() || engine.isTaught(name))
        return tr("已保存型号“%1”").arg(name);
    if (engine.parameters(name).isEmpty())
        return tr("已保存型号“%1”；任务设计器中还没有它，请在其中新建同名型号并示教").arg(name);
    return tr("已保存型号“%1”；它还没有示教，只会应答361，请在任务设计器中示教").arg(name);
}

void QModelMangerUI::done(const QString& name, const QString& text)
{
    choose(name);
    showChosen();
    m_ui->message->say(Tone::Plain, text);
    const AuditChanges changes = m_actions.takeAudit();
    if (!changes.isEmpty())
        emit modelsChanged(changes);
}

void QModelMangerUI::fail(const QString& text)
{
    m_ui->message->say(Tone::Error, text);
}

/// Parameters that the designer made before the library knew the model are lost when others are stored over them.
QString QModelMangerUI::overwritten(const QString& name, const QStringList& solutions) const
{
    QStringList lost = m_actions.engine().parameters(name).keys();
    for (int i = lost.size() - 1; i >= 0; --i) {
        if (!solutions.contains(lost[i]))
            lost.removeAt(i);
    }
    return lost.isEmpty() ? QString() : tr("将覆盖引擎中已有的同名参数：%1").arg(listed(lost));
}

void QModelMangerUI::add()
{
    begin({QModelEditUI::Purpose::Add, m_actions.proposal(tr("新型号")), QString(), nullptr,
           [this](const ModelEntry& entry, QString* error) { return m_actions.add(entry, error); }});
}

void QModelMangerUI::modify()
{
    const QString name = chosen();
    if (name.isEmpty())
        return;
    const auto remark = [this, name](const QString& newName) {
        return newName == name ? QString() : overwritten(newName, m_actions.engine().parameters(name).keys());
    };
    begin({QModelEditUI::Purpose::Modify, m_actions.entry(name), name, remark,
           [this, name](const ModelEntry& entry, QString* error) { return m_actions.modify(name, entry, error); }});
}

void QModelMangerUI::copy()
{
    const QString name = chosen();
    begin({QModelEditUI::Purpose::Copy, m_actions.proposal(name), QString(),
           [this, name](const QString& newName) {
               return overwritten(newName, m_actions.engine().parameters(name).keys());
           },
           [this, name](const ModelEntry& entry, QString* error) { return m_actions.copy(name, entry, error); }});
}

void QModelMangerUI::askRemove()
{
    const QString name = chosen();
    const bool hasParameters = !m_actions.engine().parameters(name).isEmpty();
    m_ui->question->ask(tr("删除型号“%1”？此操作不能撤销。").arg(name),
                        {tr("删除"), [this, name] { remove(name, false); }},
                        {hasParameters ? tr("连同引擎参数删除") : QString(), [this, name] { remove(name, true); }});
}

void QModelMangerUI::remove(const QString& name, bool withParameters)
{
    QString error;
    if (m_actions.remove(name, withParameters, &error))
        done(QString(), tr("已删除型号“%1”").arg(name));
    else
        fail(tr("未能删除型号“%1”：%2").arg(name, error));
}

/// A file dialog of the program's own: the platform's would block, and cannot be told the language.
QFileDialog* QModelMangerUI::askFile(const QString& title)
{
    auto* dialog = new QFileDialog(this, title, QDir::homePath(), tr("型号文件 (*.json)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setDefaultSuffix(modelSuffix);
    return dialog;
}

void QModelMangerUI::askImport()
{
    QFileDialog* dialog = askFile(tr("导入型号"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &QModelMangerUI::import);
    dialog->open();
}

void QModelMangerUI::import(const QString& path)
{
    ModelFile file;
    QString error;
    if (!ModelFile::read(path, &file, &error))
        return fail(tr("未能导入：%1").arg(error));
    const auto remark = [this, file](const QString& name) {
        const QStringList unknown = m_actions.unknownSolutions(file);
        QStringList remarks{unknown.isEmpty() ? QString() : tr("没有方案%1，其参数不导入").arg(listed(unknown)),
                            overwritten(name, file.parameters.keys())};
        remarks.removeAll(QString());
        return remarks.join(tr("；"));
    };
    begin({QModelEditUI::Purpose::Import, file.entry, QString(), remark,
           [this, file](const ModelEntry& entry, QString* error) { return m_actions.import(file, entry, error); }});
}

void QModelMangerUI::askExport()
{
    const QString name = chosen();
    QFileDialog* dialog = askFile(tr("导出型号"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(SqlText::folderName(name) + QLatin1Char('.') + modelSuffix);
    connect(dialog, &QFileDialog::fileSelected, this, [this, name](const QString& path) { exportTo(path, name); });
    dialog->open();
}

void QModelMangerUI::exportTo(const QString& path, const QString& name)
{
    QString error;
    if (m_actions.exportTo(path, name, &error))
        done(name, tr("已导出到 %1").arg(path));
    else
        fail(tr("未能导出：%1").arg(error));
}

void QModelMangerUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        refresh();
    }
    QDialog::changeEvent(event);
}
