#include "TryPanel.h"

#include "common/forms/InlineMessage.h"
#include "model/ExampleStore.h"
#include "model/ModelDrafts.h"
#include "model/ParameterRules.h"
#include "run/TaskRunner.h"
#include "run/TeachGuide.h"
#include "ui_TryPanel.h"
#include "widgets/ImageView.h"

#include <valvecell/Extension.h>
#include <valvecell/IEngine.h>
#include <valvecell/IModelTeacher.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QShortcut>

namespace {

constexpr int editPauseMs = 250;

} // namespace

TryPanel::TryPanel(IEngine* engine, ModelDrafts* drafts, ExampleStore* examples, QWidget* parent)
    : QWidget(parent)
    , m_drafts(drafts)
    , m_examples(examples)
    , m_ui(std::make_unique<Ui::TryPanel>())
    , m_runner(new TaskRunner(engine, this))
    , m_teach(new TeachGuide(extensionOf<IModelTeacher>(engine), examples->offered(), this))
{
    m_ui->setupUi(this);
    m_ui->trial->view()->setHint(tr("选择一张图像，用所选型号试运行"));
    m_ui->cameraBox->hide();
    m_editPause.setSingleShot(true);
    m_editPause.setInterval(editPauseMs);
    connectAll();
    showTeaching();
}

TryPanel::~TryPanel() = default;

void TryPanel::connectAll()
{
    connect(m_ui->chooseButton, &QPushButton::clicked, this, &TryPanel::chooseImage);
    connect(m_ui->runButton, &QPushButton::clicked, this, &TryPanel::run);
    connect(m_ui->teachButton, &QPushButton::clicked, this,
            [this] { m_teach->begin(m_image, QFileInfo(m_path).fileName()); });
    connect(m_ui->cancelTeachButton, &QPushButton::clicked, m_teach, &TeachGuide::cancel);
    connect(m_ui->trial->view(), &ImageView::clicked, m_teach, &TeachGuide::pick);
    connect(m_ui->trial->view(), &ImageView::menuWanted, this, &TryPanel::offerExample);
    connect(m_teach, &TeachGuide::stepChanged, this, &TryPanel::showTeaching);
    connect(m_teach, &TeachGuide::proposed, this, &TryPanel::takeProposal);
    connect(m_teach, &TeachGuide::failed, this,
            [this](const QString& reason) { emit failed(tr("示教未成功：%1").arg(reason)); });
    connect(m_drafts, &ModelDrafts::changed, this, &TryPanel::modelChanged);
    connect(m_examples, &ExampleStore::changed, this, &TryPanel::modelChanged);
    connect(&m_editPause, &QTimer::timeout, this, &TryPanel::run);
    auto* escape = new QShortcut(Qt::Key_Escape, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, m_teach, &TeachGuide::cancel);
}

void TryPanel::setModel(const ModelId& id)
{
    if (id == m_id) {
        updateState();
        return;
    }
    m_id = id;
    m_teach->cancel();
    forgetResult();
    run();
}

void TryPanel::modelChanged(const ModelId& id)
{
    if (id != m_id)
        return;
    if (m_runner->runsUnsaved())
        m_editPause.start();
    updateState();
}

void TryPanel::forgetResult()
{
    ++m_ticket;
    m_running = false;
    m_again = false;
    m_editPause.stop();
    m_ui->result->clear();
    m_ui->trial->setImage(m_image);
    updateState();
}

void TryPanel::chooseImage()
{
    auto* dialog = new QFileDialog(this, tr("选择图像"), QFileInfo(m_path).path());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(tr("图像 (%1)").arg(ImageFile::patterns().join(QLatin1Char(' '))));
    connect(dialog, &QFileDialog::fileSelected, this, &TryPanel::openImage);
    dialog->open();
}

void TryPanel::openImage(const QString& path)
{
    m_path = path;
    m_ui->cameraBox->setCurrentIndex(0);
    m_background.run([path] { return ImageFile::read(path); }, [this](const ImageFile& file) { takeFile(file); });
}

void TryPanel::takeFile(const ImageFile& file)
{
    if (file.path != m_path)
        return;
    if (file.image.isNull())
        emit failed(tr("无法读取图像 %1").arg(file.problem()));
    else
        takeImage(QFileInfo(file.path).fileName(), file.image);
}

void TryPanel::offerCaptured(const QString& cameraKey, const QImage& image)
{
    if (m_ui->cameraBox->findText(cameraKey) < 0)
        m_ui->cameraBox->addItem(cameraKey);
    m_ui->cameraBox->show();
    const bool followed = m_ui->cameraBox->currentIndex() > 0 && m_ui->cameraBox->currentText() == cameraKey;
    if (!followed || m_running || m_teach->step() != TeachGuide::Step::Idle || image.isNull())
        return;
    m_path.clear();
    takeImage(tr("相机 %1").arg(cameraKey), image);
}

void TryPanel::takeImage(const QString& name, const QImage& image)
{
    m_image = image;
    m_ui->fileLabel->setText(tr("%1（%2 × %3）").arg(name).arg(m_image.width()).arg(m_image.height()));
    m_teach->cancel();
    forgetResult();
    run();
}

void TryPanel::run()
{
    m_editPause.stop();
    m_again = m_running;
    const QVariantMap parameters = m_id.isNull() ? QVariantMap() : m_drafts->parameters(m_id);
    const bool usable = !m_runner->runsUnsaved() || ParameterRules::problems(parameters).isEmpty();
    if (m_running || m_id.isNull() || m_image.isNull() || !usable)
        return;
    m_running = true;
    m_ui->result->setBusy();
    m_runner->run(m_image, {m_id, parameters}, true, [this, ticket = ++m_ticket](const Trial& trial) {
        if (ticket == m_ticket)
            takeResult(trial);
    });
    updateState();
}

void TryPanel::takeResult(const Trial& trial)
{
    m_running = false;
    m_ui->result->setResult(trial.result);
    m_ui->trial->setTrial(trial);
    updateState();
    if (m_again)
        run();
}

void TryPanel::offerExample(const QPointF& point, const QPoint& globalPosition)
{
    const bool own = !m_id.isNull() && !m_drafts->isBuiltIn(m_id);
    if (!m_examples->offered() || !own || !m_ui->trial->isShowingImage() || m_teach->step() != TeachGuide::Step::Idle)
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto offer = [&](const QString& text, ExampleStore::Kind kind) {
        menu->addAction(text, this, [this, point, kind] {
            m_examples->learn(m_id, kind, m_drafts->stored(m_id), {m_path, m_image, point});
        });
    };
    offer(tr("这里是气门孔"), ExampleStore::Kind::Hole);
    offer(tr("这里不是气门孔"), ExampleStore::Kind::Rejected);
    menu->popup(globalPosition);
}

void TryPanel::takeProposal(const QVariantMap& parameters, const QVariantMap& example)
{
    QVariantMap taught = m_drafts->parameters(m_id);
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        taught.insert(it.key(), it.value());
    m_drafts->edit(m_id, taught);
    QString error;
    if (!example.isEmpty() && !m_drafts->attach(m_id, example, &error)) {
        emit failed(tr("未能加入示例：%1").arg(error));
        return;
    }
    if (m_runner->runsUnsaved())
        run();
    emit done(m_runner->runsUnsaved() ? tr("已按示教填入参数，请核对结果后保存")
                                      : tr("已按示教填入参数，请保存后试运行核对"));
}

void TryPanel::showTeaching()
{
    const auto step = m_teach->step();
    setGround(m_ui->teachBar, {lookColors().card, lookColors().accent});
    m_ui->teachBar->setVisible(step != TeachGuide::Step::Idle);
    m_ui->teachText->setText(step == TeachGuide::Step::Rim ? tr("第 1 步：点击轮缘外边上的任意一点（滚轮缩放）")
                             : step == TeachGuide::Step::Hole ? tr("第 2 步：点击气门孔的中心（滚轮缩放）")
                                                              : tr("正在计算参数…"));
    QVector<OverlayItem::Mark> marks;
    for (const QPointF& point : m_teach->points())
        marks.append({point, marks.isEmpty() ? tr("轮缘") : tr("气门孔")});
    m_ui->trial->view()->overlay()->setMarks(marks);
    m_ui->trial->setPicking(step == TeachGuide::Step::Rim || step == TeachGuide::Step::Hole);
    updateState();
}

QString TryPanel::note() const
{
    if (m_id.isNull() || !m_drafts->isUnsaved(m_id))
        return {};
    if (!m_runner->runsUnsaved())
        return tr("试运行使用已保存的参数，不含未保存的更改。");
    return ParameterRules::problems(m_drafts->parameters(m_id)).isEmpty() ? tr("试运行使用未保存的参数。")
                                                                          : tr("参数有误，改正后再试运行。");
}

void TryPanel::updateState()
{
    const bool ready = !m_id.isNull() && !m_image.isNull();
    const bool builtIn = ready && m_drafts->isBuiltIn(m_id);
    const QString text = note();
    m_ui->runButton->setEnabled(ready && !m_running);
    m_ui->teachButton->setVisible(m_teach->isOffered());
    m_ui->teachButton->setEnabled(ready && !builtIn && m_teach->step() == TeachGuide::Step::Idle);
    m_ui->teachButton->setToolTip(builtIn  ? tr("内置型号不能示教，请先新建或复制型号")
                                  : !ready ? tr("请先选择型号和图像")
                                           : tr("在图像上点两下，由引擎提出全部参数"));
    setTone(m_ui->note, Tone::Warning);
    m_ui->note->setText(text);
    m_ui->note->setVisible(!text.isEmpty());
}
