#include "dialogs/calibration/CalibrationDialog.h"

#include "common/forms/DialogForm.h"
#include "config/IniFile.h"
#include "dialogs/calibration/FourPointPanel.h"
#include "dialogs/calibration/TwoPointPanel.h"
#include "ui_CalibrationDialog.h"
#include "viewer/ksImgViewer.h"

#include <QShowEvent>

#include <utility>

namespace {

constexpr int messageMs = 1000;
constexpr int failureMs = 3000;

} // namespace

CalibrationDialog::CalibrationDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CalibrationDialog>())
{
    m_ui->setupUi(this);
    m_ownTitle = windowTitle();
    connect(m_ui->m_pbExit, &QPushButton::clicked, this, &CalibrationDialog::onButtonClicked);
    connect(m_ui->guideButton, &QPushButton::clicked, this, &CalibrationDialog::guideWanted);
}

CalibrationDialog::~CalibrationDialog()
{
    DialogForm::takeDown(this);
}

void CalibrationDialog::setPanels(CalibrationPanel* first, CalibrationPanel* second)
{
    m_panels = {first, second};
    for (CalibrationPanel* panel : m_panels) {
        m_ui->panelPlace->addWidget(panel, 1);
        connect(panel->viewer(), &ksImgViewer::filterroiChanged, this, &CalibrationDialog::onROIChange);
        connect(panel->viewer(), &ksImgViewer::roiLockIng, this, &CalibrationDialog::onRoiLockIng);
        connect(panel->viewer(), &ksImgViewer::sgImageScale, this, &CalibrationDialog::onImageScale);
        const QVector<QPushButton*> buttons = panel->buttons();
        for (QPushButton* button : buttons)
            connect(button, &QPushButton::clicked, this, &CalibrationDialog::onButtonClicked);
        connect(panel, &CalibrationPanel::messageShown, this, &CalibrationDialog::startMessageTimer);
        connect(panel, &CalibrationPanel::calibrationApplied, this, &CalibrationDialog::calibrationApplied);
        panel->initialise();
    }
}

void CalibrationDialog::setOneStation(bool one)
{
    m_panels[1]->setVisible(!one);
    m_panels[0]->setWide(one);
}

void CalibrationDialog::setUser(const std::function<QString()>& user)
{
    for (CalibrationPanel* panel : m_panels)
        panel->setUser(user);
}

int CalibrationDialog::stationOfSender() const
{
    return sender() == m_panels[1]->viewer() || sender()->objectName().endsWith(QLatin1String("_2")) ? 2 : 1;
}

void CalibrationDialog::onROIChange(const AwesomeRoiInfo& info, const QString& name)
{
    panelOfSender()->moveMarker(info, name);
}

void CalibrationDialog::onRoiLockIng(const QString&)
{
    panelOfSender()->showLocked();
}

void CalibrationDialog::onImageScale(qreal scale)
{
    saveViewerScale(QStringLiteral("Scale_Standard_%1").arg(stationOfSender()), scale);
}

void CalibrationDialog::onButtonClicked()
{
    QString name = sender()->objectName();
    if (name == QLatin1String("m_pbExit")) {
        close();
        return;
    }
    if (stationOfSender() == 2)
        name.chop(2);
    panelOfSender()->press(name);
}

// A message that follows another within the second goes with the first one's timer; a failure stays to be read.
void CalibrationDialog::startMessageTimer(bool failure)
{
    if (m_messageTimer != 0 && !failure)
        return;
    if (m_messageTimer != 0)
        killTimer(m_messageTimer);
    m_messageTimer = startTimer(failure ? failureMs : messageMs, Qt::CoarseTimer);
}

void CalibrationDialog::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_messageTimer)
        return QDialog::timerEvent(event);
    killTimer(m_messageTimer);
    m_messageTimer = 0;
    for (CalibrationPanel* panel : m_panels)
        panel->clearMessage();
}

void CalibrationDialog::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        refresh();
    QDialog::showEvent(event);
}

void CalibrationDialog::refresh()
{
    for (CalibrationPanel* panel : m_panels)
        panel->begin();
}

void CalibrationDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        const QString title = windowTitle();
        m_ui->retranslateUi(this);
        const QString own = std::exchange(m_ownTitle, windowTitle());
        if (title != own)
            setWindowTitle(title); // whoever opened the dialog gave it
    }
    QDialog::changeEvent(event);
}

ksImageCaliUI::ksImageCaliUI(QWidget* parent)
    : CalibrationDialog(parent)
{
    setPanels(new TwoPointPanel(1, this), new TwoPointPanel(2, this));
}

ksImageCaliUI4P::ksImageCaliUI4P(QWidget* parent)
    : CalibrationDialog(parent)
{
    setPanels(new FourPointPanel(1, this), new FourPointPanel(2, this));
}
