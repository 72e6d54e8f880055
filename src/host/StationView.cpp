#include "host/StationView.h"

#include "ui_StationView.h"
#include "workflow/ResultHandler.h"

StationView::StationView(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::StationView>())
{
    m_ui->setupUi(this);
    connect(m_ui->viewer, &ksImgViewer::sgImageScale, this, &StationView::sgImageScale);
}

StationView::~StationView() = default;

void StationView::setStation(int number)
{
    m_ui->stationLabel->setText(tr("工位%1").arg(number));
}

void StationView::setImage(const QImage& image)
{
    m_ui->viewer->setImage(image);
}

void StationView::setModelLabel(const QString& richText)
{
    QString text = richText;
    m_ui->modelLabel->setText(text.replace(QLatin1String("< /"), QLatin1String("</"))); // the label's own form is odd
}

void StationView::setReading(const StationReading& reading)
{
    const QString none = QStringLiteral("—");
    m_ui->angleValue->setText(reading.found ? QString::number(reading.angle, 'f', 3) + QStringLiteral("°") : none);
    m_ui->xValue->setText(reading.found ? QString::number(reading.x, 'f', 3) : none);
    m_ui->yValue->setText(reading.found ? QString::number(reading.y, 'f', 3) : none);
    m_ui->tipValue->setText(reading.tip.trimmed());
    m_ui->tipValue->setProperty("found", reading.found);
}

void StationView::hideReading()
{
    m_ui->reading->hide();
}
