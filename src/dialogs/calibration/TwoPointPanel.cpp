#include "dialogs/calibration/TwoPointPanel.h"

#include "dialogs/calibration/CalibrationDrawing.h"
#include "dialogs/calibration/CalibrationFit.h"
#include "ui_TwoPointForm.h"

#include <cmath>

namespace {

/// A scale that moves further is more than a better measurement of the same camera.
constexpr double largestMove = 0.02;

/// With nothing stored.
bool isAsDelivered(const StationConfig& config)
{
    const TwoPointCalibration& stored = config.twoPoint;
    return stored.scale == 1.0 && stored.xOffset == 0.0 && stored.yOffset == 0.0 && config.spoiledTwoPoint.isEmpty();
}

} // namespace

TwoPointPanel::TwoPointPanel(int station, QWidget* parent)
    : CalibrationPanel(station, 1, CalibrationHistory::Kind::TwoPoint, parent)
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
    return scaleOf(FieldNumber::value(m_form->m_lineEdit_Pixels->text()), lengthFromField());
}

double TwoPointPanel::lengthFromField() const
{
    return FieldNumber::kept(m_form->m_lineEdit_Length->text(), config().twoPoint.length);
}

QVector<QLineEdit*> TwoPointPanel::numberFields() const
{
    return {m_form->m_lineEdit_Length, m_form->m_lineEdit_Xoffset, m_form->m_lineEdit_Yoffset};
}

/// A scale that came another way, such as by hand into the file, stays until points or length are changed here; one
/// that was never made follows from points and length that were.
bool TwoPointPanel::isScaleChanged(const StationConfig& stored) const
{
    const TwoPointCalibration& own = stored.twoPoint;
    const TwoPointCalibration delivered;
    const bool made =
        own.point1 != delivered.point1 || own.point2 != delivered.point2 || own.length != delivered.length;
    return m_form->m_lineEdit_Length->isModified() || m_point1 != own.point1 || m_point2 != own.point2 ||
           !stored.twoPointCalibration().problem().isEmpty() || (isAsDelivered(stored) && made);
}

double TwoPointPanel::scaleToApply(const StationConfig& stored) const
{
    return isScaleChanged(stored) ? scaleFromFields() : stored.twoPoint.scale;
}

void TwoPointPanel::store(StationConfig& config)
{
    TwoPointCalibration& stored = config.twoPoint;
    stored.scale = scaleToApply(config);
    stored.length = lengthFromField();
    stored.point1 = m_point1;
    stored.point2 = m_point2;
    stored.xOffset = FieldNumber::kept(m_form->m_lineEdit_Xoffset->text(), stored.xOffset);
    stored.yOffset = FieldNumber::kept(m_form->m_lineEdit_Yoffset->text(), stored.yOffset);
    config.swapXY = m_form->checkBox_XY_1->isChecked();
    config.spoiledTwoPoint = {};
}

void TwoPointPanel::showStored(const StationConfig& config)
{
    m_form->m_lineEdit_Scale->setText(FieldNumber::text(config.twoPoint.scale));
}

QStringList TwoPointPanel::doubts(const StationConfig& stored, const StationConfig& wanted) const
{
    const QString problem = wanted.twoPointCalibration().problem();
    if (!problem.isEmpty())
        return {problem};
    const double from = stored.twoPoint.scale;
    const double to = wanted.twoPoint.scale;
    const QString before = stored.twoPointCalibration().problem();
    if (!before.isEmpty())
        return {tr("原标定不可用（%1），比例将为 %2 mm/px").arg(before, FieldNumber::text(to))};
    if (isAsDelivered(stored) || !(std::abs(to - from) > largestMove * from))
        return {};
    return {tr("比例将由 %1 变为 %2 mm/px").arg(FieldNumber::text(from), FieldNumber::text(to))};
}

CalibrationPanel::Hints TwoPointPanel::hints()
{
    Hints hints;
    const double scale = scaleToApply(config());
    hints.facts << tr("比例：1 px = %1 mm，1 mm = %2 px").arg(FieldNumber::text(scale), FieldNumber::text(1.0 / scale));
    if (m_point1 == m_point2)
        hints.warnings << tr("P1 与 P2 重合");
    const QString outside = outsideWarning();
    if (!outside.isEmpty())
        hints.warnings << outside;
    hints.warnings << numberWarnings();
    if (!(FieldNumber::value(m_form->m_lineEdit_Length->text()) > 0))
        hints.warnings << tr("两点实际距离应大于 0");
    return hints;
}

Calibration TwoPointPanel::calibration(const StationConfig& config) const
{
    return isAsDelivered(config) ? Calibration() : config.twoPointCalibration();
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
