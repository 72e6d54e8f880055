#include "TryPanel.h"

#include "model/ModelDrafts.h"
#include "run/ImageLoader.h"
#include "run/TaskResult.h"
#include "run/TaskRunner.h"
#include "ui_TryPanel.h"

#include <QFileDialog>
#include <QFileInfo>

TryPanel::TryPanel(IEngine* engine, ModelDrafts* drafts, QWidget* parent)
    : QWidget(parent)
    , m_drafts(drafts)
    , m_ui(std::make_unique<Ui::TryPanel>())
    , m_loader(new ImageLoader(this))
    , m_runner(new TaskRunner(engine, this))
{
    m_ui->setupUi(this);
    m_ui->view->setHint(tr("选择一张图像，用所选型号试运行"));
    connect(m_ui->chooseButton, &QPushButton::clicked, this, &TryPanel::chooseImage);
    connect(m_ui->runButton, &QPushButton::clicked, this, &TryPanel::run);
    connect(m_loader, &ImageLoader::loaded, this, &TryPanel::takeImage);
    connect(m_loader, &ImageLoader::failed, this,
            [this](const QString&, const QString& reason) { emit failed(tr("无法读取图像：%1").arg(reason)); });
    connect(m_drafts, &ModelDrafts::changed, this, &TryPanel::updateState);
    updateState();
}

TryPanel::~TryPanel() = default;

void TryPanel::setModel(const ModelId& id)
{
    if (id != m_id) {
        ++m_ticket;
        m_running = false;
        m_ui->result->clear();
        m_ui->view->setImage(m_image);
    }
    m_id = id;
    updateState();
}

void TryPanel::chooseImage()
{
    auto* dialog = new QFileDialog(this, tr("选择图像"), QFileInfo(m_path).path());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(tr("图像 (%1)").arg(ImageLoader::patterns().join(QLatin1Char(' '))));
    connect(dialog, &QFileDialog::fileSelected, this, &TryPanel::openImage);
    dialog->open();
}

void TryPanel::openImage(const QString& path)
{
    m_path = path;
    m_loader->load(path);
}

void TryPanel::takeImage(const QString& path, const QImage& image)
{
    if (path != m_path)
        return;
    m_image = image;
    m_ui->fileLabel->setText(
        tr("%1（%2 × %3）").arg(QFileInfo(path).fileName()).arg(image.width()).arg(image.height()));
    m_ui->view->setImage(image);
    run();
}

void TryPanel::run()
{
    if (m_id.isNull() || m_image.isNull())
        return;
    const quint64 ticket = ++m_ticket;
    m_running = true;
    m_ui->result->setBusy();
    m_runner->run(m_image, m_id, [this, ticket](const TaskResult& result) { takeResult(ticket, result); });
    updateState();
}

void TryPanel::takeResult(quint64 ticket, const TaskResult& result)
{
    if (ticket != m_ticket)
        return;
    m_running = false;
    m_ui->result->setResult(result);
    m_ui->view->setImage(result.image.isNull() ? m_image : result.image);
    updateState();
}

void TryPanel::updateState()
{
    m_ui->runButton->setEnabled(!m_id.isNull() && !m_image.isNull() && !m_running);
    m_ui->note->setVisible(m_drafts->isUnsaved(m_id));
}
