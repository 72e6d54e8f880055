#include "dialogs/cameras/PictureGauges.h"

#include "common/forms/DialogForm.h"
#include "common/forms/InlineMessage.h"
#include "dialogs/cameras/PictureMeasures.h"
#include "ui_PictureGauges.h"

#include <valvecell/ICameraFeatures.h>

#include <QEvent>

namespace {
constexpr double tooMuchLight = 0.005; // more than glints
} // namespace

PictureGauges::PictureGauges(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::PictureGauges>())
{
    m_ui->setupUi(this);
    m_ui->statisticsLabel->hide();
    connect(m_ui->forgetButton, &QPushButton::clicked, this, &PictureGauges::forgetBest);
    showFigures();
}

PictureGauges::~PictureGauges() = default;

void PictureGauges::showPicture(const QImage& image)
{
    m_next = image;
    if (!m_measuring)
        measure();
}

void PictureGauges::measure()
{
    m_measuring = true;
    m_background.run([image = std::exchange(m_next, {})] { return measurePicture(image); },
                     [this](const PictureMeasures& measures) {
                         m_measuring = false;
                         show(measures);
                         if (!m_next.isNull())
                             measure();
                     });
}

void PictureGauges::show(const PictureMeasures& measures)
{
    m_ui->histogram->setMeasures(measures);
    m_any = true;
    m_overexposed = measures.overexposed;
    m_focus = measures.focus;
    m_bestFocus = std::max(m_bestFocus, m_focus);
    showFigures();
}

void PictureGauges::forgetBest()
{
    m_bestFocus = m_focus;
    showFigures();
}

void PictureGauges::showFigures()
{
    m_ui->forgetButton->setEnabled(m_any);
    setTone(m_ui->overexposedLabel, m_overexposed > tooMuchLight ? Tone::Warning : Tone::Plain);
    m_ui->overexposedLabel->setText(m_any ? QStringLiteral("%1 %").arg(100 * m_overexposed, 0, 'f', 1) : tr("无图像"));
    m_ui->focusLabel->setText(
        m_any ? tr("%1，最大 %2").arg(QString::number(m_focus, 'f', 1), QString::number(m_bestFocus, 'f', 1))
              : tr("无图像"));
    m_ui->focusBar->setValue(m_bestFocus > 0 ? int(100 * m_focus / m_bestFocus) : 0);
}

void PictureGauges::showStatistics(const CameraStatistics& statistics)
{
    const bool loses = statistics.incomplete > 0 || statistics.lostPackets > 0;
    setTone(m_ui->statisticsLabel, loses ? Tone::Warning : Tone::Plain);
    m_ui->statisticsLabel->setText(
        tr("每秒 %1 幅，丢失数据包 %2（重发 %3），不完整图像 %4，重新打开 %5 次")
            .arg(QString::number(statistics.imagesPerSec, 'f', 1), QString::number(statistics.lostPackets),
                 QString::number(statistics.resentPackets), QString::number(statistics.incomplete),
                 QString::number(statistics.reopened)));
    m_ui->statisticsLabel->show();
}

void PictureGauges::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        showFigures();
    }
    QWidget::changeEvent(event);
}
