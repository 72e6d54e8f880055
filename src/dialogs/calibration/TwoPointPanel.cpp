#include "dialogs/calibration/TwoPointPanel.h"

#include "dialogs/calibration/CalibrationDrawing.h"
#include "dialogs/calibration/CalibrationFit.h"
#include "ui_TwoPointForm.h"

TwoPointPanel::TwoPointPanel(int station, QWidget* parent)
    : CalibrationPanel(station, 1, parent)
    , m_form(std::make_unique<Ui::TwoPointForm>())
{
    auto* form = new QWidget(this);
    m_form->setupUi(form);
    setForm(form);
}

TwoPointPanel::~TwoPointPanel() = default;

QVector<CalibrationPanel::Marker> TwoPointPanel::markers()
{
    return {{QStringLiteral("P1"), &m_point1}, {QStringLiteral("P2"), &m_point2}};
}

void TwoPointPanel::fillFields(const StationConfig& config)
{
    const TwoPointCalibration& stored = config.twoPoint;
    m_point1 = stored.point1;
    m_point2 = stored.point2;
    showPoint(QStringLiteral("P1"));
    showPoint(QStringLiteral("P2"));
    m_form->m_lineEdit_Xoffset->setText(FieldNumber::text(stored.xOffset));
    m_form->m_lineEdit_Yoffset->setText(FieldNumber::text(stored.yOffset));
    m_form->m_lineEdit_Length->setText(FieldNumber::text(stored.length));
    m_form->m_lineEdit_Scale->setText(FieldNumber::text(stored.scale));
    m_form->checkBox_XY_1->setChecked(config.swapXY);
}

void TwoPointPanel::showPoint(const QString& name)
{
    const bool first = name == QLatin1String("P1");
    const QPoint& point = first ? m_point1 : m_point2;
    (first ? m_form->m_lineEdit_P1X : m_form->m_lineEdit_P2X)->setText(QString::number(point.x()));
    (first ? m_form->m_lineEdit_P1Y : m_form->m_lineEdit_P2Y)->setText(QString::number(point.y()));
}

void TwoPointPanel::recompute()
{
    m_form->m_lineEdit_Pixels->setText(FieldNumber::text(pixelDistance(m_point1, m_point2)));
}

// From the texts: the six digits of the shown pixel distance are what the operator sees and what counts.
double TwoPointPanel::scaleFromFields() const
{
    return scaleOf(FieldNumber::value(m_form->m_lineEdit_Pixels->text()),
                   FieldNumber::value(m_form->m_lineEdit_Length->text()));
}

void TwoPointPanel::store(StationConfig& config)
{
    const double scale = scaleFromFields();
    m_form->m_lineEdit_Scale->setText(FieldNumber::text(scale));
    config.swapXY = m_form->checkBox_XY_1->isChecked();
    TwoPointCalibration& stored = config.twoPoint;
    stored.xOffset = FieldNumber::value(m_form->m_lineEdit_Xoffset->text());
    stored.yOffset = FieldNumber::value(m_form->m_lineEdit_Yoffset->text());
    stored.point1 = m_point1;
    stored.point2 = m_point2;
    stored.length = FieldNumber::value(m_form->m_lineEdit_Length->text());
    stored.scale = scale;
}

CalibrationPanel::Hints TwoPointPanel::hints()
{
    Hints hints;
    const double scale = scaleFromFields();
    hints.facts << tr("比例：1 px = %1 mm，1 mm = %2 px").arg(FieldNumber::text(scale), FieldNumber::text(1.0 / scale));
    if (m_point1 == m_point2)
        hints.warnings << tr("P1 与 P2 重合");
    const QString outside = outsideWarning();
    if (!outside.isEmpty())
        hints.warnings << outside;
    hints.warnings << numberWarnings(
        {m_form->m_lineEdit_Length, m_form->m_lineEdit_Xoffset, m_form->m_lineEdit_Yoffset});
    if (!(FieldNumber::value(m_form->m_lineEdit_Length->text()) > 0))
        hints.warnings << tr("两点实际距离应大于 0");
    return hints;
}

Calibration TwoPointPanel::calibration(const StationConfig& config) const
{
    const TwoPointCalibration& stored = config.twoPoint;
    const bool asDelivered = stored.scale == 1.0 && stored.xOffset == 0.0 && stored.yOffset == 0.0;
    return asDelivered ? Calibration() : config.twoPointCalibration();
}

void TwoPointPanel::draw(PointDrawing& drawing)
{
    const double millimetres = FieldNumber::value(m_form->m_lineEdit_Length->text());
    drawing.setLines(QVector<QPointF>{fromCenter(m_point1), fromCenter(m_point2)}, false,
                     FieldNumber::text(millimetres) + QStringLiteral(" mm"));
}

void TwoPointPanel::retranslate()
{
    m_form->retranslateUi(this);
}
