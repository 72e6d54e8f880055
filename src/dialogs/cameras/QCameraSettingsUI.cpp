#include "dialogs/cameras/QCameraSettingsUI.h"

#include "common/forms/DialogForm.h"
#include "dialogs/cameras/CameraNames.h"
#include "dialogs/cameras/LivePicture.h"
#include "ui_QCameraSettingsUI.h"

#include <QShowEvent>

namespace {
constexpr int stateTickMs = 500;
} // namespace

QCameraSettingsUI::QCameraSettingsUI(ICoreCtrl& core, const ksGlobalConfig& config, QString cameraKey, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QCameraSettingsUI>())
    , m_cameras(core, config)
    , m_key(std::move(cameraKey))
    , m_live(new LivePicture(m_cameras.preview, m_key, this))
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->keyLabel->setText(m_key);
    m_ui->featuresPage->setCamera(m_cameras.features, m_key);
    m_tick.setInterval(stateTickMs);
    connectAll();
    load();
}

QCameraSettingsUI::~QCameraSettingsUI()
{
    DialogForm::takeDown(this);
}

void QCameraSettingsUI::connectAll()
{
    connect(&m_tick, &QTimer::timeout, this, &QCameraSettingsUI::tick);
    connect(m_ui->form, &CameraForm::edited, this, [this] {
        m_failure.clear();
        judge();
    });
    connect(m_ui->form, &CameraForm::warningChanged, this, &QCameraSettingsUI::judge);
    connect(m_ui->liveButton, &QPushButton::toggled, m_live, &LivePicture::setRunning);
    connect(m_ui->singleButton, &QPushButton::clicked, m_live, &LivePicture::single);
    connect(m_live, &LivePicture::pictureCame, this, &QCameraSettingsUI::showPicture);
    connect(m_live, &LivePicture::failed, m_ui->liveMessage, &QLabel::setText);
    connect(m_ui->featuresPage, &CameraFeaturesPage::featureWritten, this, &QCameraSettingsUI::settingsApplied);
    connect(m_ui->okButton, &QPushButton::clicked, this, &QCameraSettingsUI::accept);
    connect(m_ui->applyButton, &QPushButton::clicked, this, &QCameraSettingsUI::apply);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &QCameraSettingsUI::reject);
}

void QCameraSettingsUI::load()
{
    m_failure.clear();
    showSettings();
    tick();
    judge();
}

void QCameraSettingsUI::showSettings()
{
    m_shown = m_cameras.settingsOf(m_key);
    m_ui->form->setParameters(m_cameras.parameters(m_cameras.status(m_key).type, m_key));
    m_ui->form->setMissing(m_cameras.missingSettings(m_key));
    m_ui->form->setValues(m_shown);
    showPages();
}

void QCameraSettingsUI::showPages()
{
    const bool hasSettings = !m_shown.isEmpty();
    m_ui->pages->setTabVisible(m_ui->pages->indexOf(m_ui->settingsPage), hasSettings);
    m_ui->pages->setTabVisible(m_ui->pages->indexOf(m_ui->featuresPage), m_cameras.features != nullptr);
    m_ui->pages->setVisible(hasSettings || m_cameras.features);
}

void QCameraSettingsUI::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        load();
    m_tick.start();
    QDialog::showEvent(event);
}

void QCameraSettingsUI::hideEvent(QHideEvent* event)
{
    m_tick.stop();
    m_ui->liveButton->setChecked(false); // nobody looks
    QDialog::hideEvent(event);
}

void QCameraSettingsUI::tick()
{
    const bool there = m_cameras.has(m_key);
    if (there && edits().isEmpty() && m_cameras.settingsOf(m_key) != m_shown)
        showSettings(); // another window changed them
    m_ui->form->setEnabled(there);
    m_ui->form->setMissing(m_cameras.missingSettings(m_key));
    if (m_cameras.features)
        m_ui->gauges->showStatistics(m_cameras.features->statistics(m_key));
    showStatus();
    const QString refused = liveProblem();
    if (!refused.isEmpty()) {
        m_ui->liveButton->setChecked(false);
        m_ui->liveMessage->setText(refused);
    } else if (!m_ui->liveButton->isEnabled()) {
        m_ui->liveMessage->clear();
    }
    m_ui->liveButton->setEnabled(refused.isEmpty());
    m_ui->singleButton->setEnabled(refused.isEmpty());
    judge();
}

void QCameraSettingsUI::showStatus()
{
    const CameraStatus status = m_cameras.status(m_key);
    const QString stations = m_cameras.stationsOf(m_key);
    m_ui->typeLabel->setText(CameraNames::of(status.type));
    m_ui->stateLabel->setText(CameraNames::of(status.state));
    m_ui->formatLabel->setText(status.size.isEmpty() ? CameraNames::of(status.format)
                                                     : QStringLiteral("%1, %2 × %3")
                                                           .arg(CameraNames::of(status.format))
                                                           .arg(status.size.width())
                                                           .arg(status.size.height()));
    m_ui->stationLabel->setText(stations.isEmpty() ? tr("（未使用）") : stations);
    m_ui->statusMessage->sayOrHide(Tone::Warning, status.message);
}

void QCameraSettingsUI::showPicture(const QImage& image)
{
    m_ui->liveMessage->setText(QStringLiteral("%1 × %2").arg(image.width()).arg(image.height()));
    m_ui->viewer->setImage(image);
    m_ui->gauges->showPicture(image);
}

QString QCameraSettingsUI::liveProblem() const
{
    if (!m_cameras.has(m_key))
        return tr("相机已不存在");
    if (!m_cameras.preview)
        return tr("此核心控制模块没有实时图像");
    return m_cameras.isInProduction(m_key) ? tr("在线模式下，工位的相机不能实时取像") : QString();
}

QVariantMap QCameraSettingsUI::edits() const
{
    return editedSettings(m_shown, m_ui->form->values());
}

QString QCameraSettingsUI::problem() const
{
    if (!m_cameras.has(m_key))
        return tr("相机“%1”已不存在").arg(m_key);
    return m_ui->form->problem();
}

void QCameraSettingsUI::judge()
{
    const QString problem = this->problem();
    const QString wrong = problem.isEmpty() ? m_failure : problem;
    const QVariantMap edits = this->edits();
    const QString warning = m_ui->form->warning(edits); // of the stored folder the camera itself reports
    m_ui->okButton->setEnabled(problem.isEmpty());
    m_ui->applyButton->setEnabled(problem.isEmpty() && !edits.isEmpty());
    if (!wrong.isEmpty())
        m_ui->message->say(Tone::Error, wrong);
    else if (!warning.isEmpty())
        m_ui->message->say(Tone::Warning, warning);
    else if (m_ui->message->tone() != Tone::Plain || !edits.isEmpty())
        m_ui->message->clear();
}

void QCameraSettingsUI::accept()
{
    if (store())
        QDialog::accept();
}

void QCameraSettingsUI::apply()
{
    if (store())
        m_ui->message->say(Tone::Plain, tr("已保存"));
}

bool QCameraSettingsUI::store()
{
    judge(); // the camera may have gone since the last tick
    if (!problem().isEmpty())
        return false;
    const QVariantMap wanted = edits();
    if (wanted.isEmpty())
        return true;
    const CameraType type = m_cameras.status(m_key).type;
    const CameraEntry before{m_key, type, m_cameras.settingsOf(m_key)};
    QString error;
    if (!m_cameras.settings->applySettings(m_key, wanted, &error)) {
        m_failure = tr("未能保存，参数没有改变：%1").arg(error);
        judge();
        return false;
    }
    load();
    emit settingsApplied(CameraAudit::changed(before, {m_key, type, wanted}));
    return true;
}

void QCameraSettingsUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        m_ui->keyLabel->setText(m_key);
        m_ui->form->setParameters(m_cameras.parameters(m_cameras.status(m_key).type, m_key));
        m_ui->message->clear();
        m_failure.clear();
        tick();
    }
    QDialog::changeEvent(event);
}
