#include "DesignerWindow.h"

#include "model/ExampleStore.h"
#include "model/ModelDrafts.h"
#include "model/ParameterRules.h"
#include "panels/BatchPanel.h"
#include "panels/ExamplePanel.h"
#include "panels/ModelPanel.h"
#include "panels/ParameterPanel.h"
#include "panels/TryPanel.h"
#include "ui_DesignerWindow.h"

#include <valvecell/Extension.h>
#include <valvecell/IEngine.h>
#include <valvecell/ISolutionStore.h>

#include <QCloseEvent>
#include <QDialog>
#include <QFileInfo>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

/// Qt's own palette has a colour for faint text but no brush of it, so that labels draw nothing. A host with a look of
/// its own keeps it.
void makeFaintTextVisible(QWidget* window)
{
    const QPalette own = window->palette();
    if (own.brush(QPalette::PlaceholderText).style() != Qt::NoBrush)
        return;
    QPalette faint;
    faint.setColor(QPalette::PlaceholderText, own.color(QPalette::PlaceholderText));
    window->setPalette(faint);
}

/// Over its parent, behind which a window of its own would hide; with a window's buttons all the same.
Qt::WindowFlags windowFlagsFor(const QWidget* parent)
{
    return parent ? Qt::Dialog | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint : Qt::Window;
}

} // namespace

DesignerWindow::DesignerWindow(IEngine* engine, QWidget* parent)
    : QWidget(parent, windowFlagsFor(parent))
    , m_ui(std::make_unique<Ui::DesignerWindow>())
    , m_engine(engine)
{
    m_ui->setupUi(this);
    makeFaintTextVisible(this);
    if (auto* store = extensionOf<ISolutionStore>(engine)) {
        m_examples = new ExampleStore(extensionOf<IModelExamples>(engine), this);
        m_drafts = new ModelDrafts(store, m_examples, this);
        connect(m_examples, &ExampleStore::failed, this, &DesignerWindow::showError);
        connect(m_examples, &ExampleStore::learned, this,
                [this](const ModelId& id, IModelExamples::Kind kind, const QString& path) {
                    const QString name = QFileInfo(path).fileName();
                    showMessage(kind == IModelExamples::Kind::Hole ? tr("“%1”已加入孔示例 %2").arg(id.model, name)
                                                                   : tr("“%1”已加入误认示例 %2").arg(id.model, name));
                });
        connect(m_drafts, &ModelDrafts::changed, this, &DesignerWindow::updateTitle);
        connect(m_drafts, &ModelDrafts::listChanged, this, &DesignerWindow::updateTitle);
    }
    build();
}

DesignerWindow::~DesignerWindow()
{
    leave(); // a field that loses the focus emits it while there is still somebody to hear it
}

template <typename Panel>
Panel* DesignerWindow::adopt(Panel* panel)
{
    connect(panel, &Panel::failed, this, &DesignerWindow::showError);
    connect(panel, &Panel::done, this, &DesignerWindow::showMessage);
    return panel;
}

void DesignerWindow::build()
{
    if (m_drafts)
        buildPanels();
    else
        explainMissing();
}

void DesignerWindow::buildPanels()
{
    m_models = adopt(new ModelPanel(m_engine->taskList(), m_drafts));
    auto* parameters = adopt(new ParameterPanel(m_drafts));
    auto* examples = adopt(new ExamplePanel(m_examples, m_drafts));
    m_trial = adopt(new TryPanel(m_engine, m_drafts, m_examples));
    m_batch = adopt(new BatchPanel(m_engine, m_drafts, m_examples));
    auto* left = new QWidget;
    auto* column = new QVBoxLayout(left);
    column->setContentsMargins({});
    column->addWidget(m_models, 1);
    column->addWidget(examples);
    m_tabs = new QTabWidget;
    m_tabs->setObjectName(QStringLiteral("tabs"));
    m_tabs->addTab(m_trial, tr("试运行与示教"));
    m_tabs->addTab(m_batch, tr("批量复检"));
    m_ui->splitter->addWidget(left);
    m_ui->splitter->addWidget(parameters);
    m_ui->splitter->addWidget(m_tabs);
    m_ui->splitter->setStretchFactor(2, 1);
    m_ui->splitter->setSizes({230, 370, 780});
    const auto showModel = [=](const ModelId& id) {
        parameters->setModel(id);
        examples->setModel(id);
        m_trial->setModel(id);
        m_batch->setModel(id);
    };
    connect(m_models, &ModelPanel::modelChosen, this, showModel);
    connect(m_batch, &BatchPanel::imageWanted, this, [this](const QString& path) { tryImage({}, path); });
    showModel(m_models->current());
}

void DesignerWindow::switchLanguage()
{
    m_ui->retranslateUi(this);
    m_ui->ask->dismiss();
    m_ui->status->clear();
    if (!m_drafts) {
        explainMissing();
        return;
    }
    const ModelId model = m_models->current();
    const int tab = m_tabs->currentIndex();
    const QString image = m_trial->imageFile();
    const QList<int> widths = m_ui->splitter->sizes();
    while (m_ui->splitter->count() > 0)
        delete m_ui->splitter->widget(0);
    buildPanels();
    m_ui->splitter->setSizes(widths);
    m_models->select(model);
    m_tabs->setCurrentIndex(tab);
    if (!image.isEmpty())
        m_trial->openImage(image);
}

void DesignerWindow::explainMissing()
{
    QString text = tr("没有可用的检测引擎，无法设计型号。");
    if (m_engine) {
        const QStringList solutions = m_engine->taskList()->list();
        text = tr("当前检测引擎不提供方案库接口，不能在此查看和修改型号。\n请使用引擎自带的工具。\n\n引擎中的方案：%1")
                   .arg(solutions.isEmpty() ? tr("无") : solutions.join(tr("、")));
    }
    m_ui->missingLabel->setText(text);
    m_ui->pages->setCurrentWidget(m_ui->missingPage);
}

void DesignerWindow::showCaptured(const QString& cameraKey, const QImage& image)
{
    if (m_trial)
        m_trial->offerCaptured(cameraKey, image);
}

void DesignerWindow::tryImage(const ModelId& id, const QString& path)
{
    if (!m_trial)
        return;
    if (!id.isNull())
        m_models->select(id);
    m_tabs->setCurrentWidget(m_trial);
    m_trial->openImage(path);
}

void DesignerWindow::showMessage(const QString& message)
{
    m_ui->status->say(Tone::Plain, message);
}

void DesignerWindow::showError(const QString& message)
{
    m_ui->status->say(Tone::Error, message);
}

void DesignerWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        switchLanguage();
    QWidget::changeEvent(event);
}

void DesignerWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Others may have changed the store while the window was closed.
    if (m_models)
        m_models->refresh();
}

void DesignerWindow::closeEvent(QCloseEvent* event)
{
    const bool unsaved = !unsavedNames().isEmpty();
    event->setAccepted(!unsaved);
    if (unsaved)
        askBeforeClosing();
    else if (m_batch)
        m_batch->stop();
}

QStringList DesignerWindow::unsavedNames() const
{
    QStringList names;
    const QList<ModelId> unsaved = m_drafts ? m_drafts->unsaved() : QList<ModelId>();
    for (const ModelId& id : unsaved)
        names.append(QStringLiteral("%1 / %2").arg(id.solution, id.model));
    return names;
}

void DesignerWindow::leave()
{
    const auto dialogs = findChildren<QDialog*>();
    for (QDialog* dialog : dialogs)
        dialog->reject();
    m_ui->ask->dismiss();
    if (m_batch)
        m_batch->stop();
    hide();
}

void DesignerWindow::askBeforeClosing()
{
    m_ui->ask->ask(tr("以下型号有未保存的更改：%1").arg(unsavedNames().join(tr("、"))),
                   {tr("全部保存并关闭"), [this] { saveAllAndClose(); }},
                   {tr("放弃更改并关闭"), [this] { dropAllAndClose(); }});
}

void DesignerWindow::saveAllAndClose()
{
    const QList<ModelId> unsaved = m_drafts->unsaved();
    for (const ModelId& id : unsaved) {
        QString error;
        if (!m_drafts->save(id, &error)) {
            m_models->select(id);
            showError(tr("未能保存“%1”：%2").arg(id.model, ParameterRules::readable(error)));
            return;
        }
    }
    close();
}

void DesignerWindow::dropAllAndClose()
{
    const QList<ModelId> unsaved = m_drafts->unsaved();
    for (const ModelId& id : unsaved)
        m_drafts->revert(id);
    close();
}

void DesignerWindow::updateTitle()
{
    setWindowModified(!m_drafts->unsaved().isEmpty());
}
