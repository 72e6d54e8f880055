#include "dialogs/calibration/FourPointPanel.h"

#include "config/ksGlobalConfig.h"
#include "dialogs/calibration/CalibrationDrawing.h"
#include "dialogs/calibration/CalibrationFit.h"
#include "ui_FourPointForm.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace {

QString shown(const QPointF& point)
{
    return QStringLiteral("(%1，%2)").arg(point.x(), 0, 'f', 3).arg(point.y(), 0, 'f', 3);
}

QString fixed3(double value)
{
    return QString::number(value, 'f', 3);
}

} // namespace

FourPointPanel::FourPointPanel(int station, QWidget* parent)
    : CalibrationPanel(station, 5, CalibrationHistory::Kind::FourPoint, parent)
    , m_form(std::make_unique<Ui::FourPointForm>())
{
    auto* form = new QWidget(this);
    m_form->setupUi(form);
    setForm(form);
}

FourPointPanel::~FourPointPanel() = default;

FourPointPanel::Fields FourPointPanel::pixelFields() const
{
    return {m_form->m_lineEdit_P1X, m_form->m_lineEdit_P1Y, m_form->m_lineEdit_P2X, m_form->m_lineEdit_P2Y,
            m_form->m_lineEdit_P3X, m_form->m_lineEdit_P3Y, m_form->m_lineEdit_P4X, m_form->m_lineEdit_P4Y};
}

FourPointPanel::Fields FourPointPanel::realFields() const
{
    return {m_form->m_lineEdit_RealP1X, m_form->m_lineEdit_RealP1Y, m_form->m_lineEdit_RealP2X,
            m_form->m_lineEdit_RealP2Y, m_form->m_lineEdit_RealP3X, m_form->m_lineEdit_RealP3Y,
            m_form->m_lineEdit_RealP4X, m_form->m_lineEdit_RealP4Y};
}

std::array<QPointF, 4> FourPointPanel::realPoints() const
{
    const Fields fields = realFields();
    std::array<QPointF, 4> points = config().fourPoint.realPoints;
    for (int i = 0; i < 4; ++i)
        points[i] = {FieldNumber::kept(fields[2 * i]->text(), points[i].x()),
                     FieldNumber::kept(fields[2 * i + 1]->text(), points[i].y())};
    return points;
}

Calibration FourPointPanel::mapFromFields() const
{
    return Calibration::fourPoint(solveAffine(m_points, realPoints()));
}

QVector<CalibrationPanel::Marker> FourPointPanel::markers()
{
    QVector<Marker> all;
    for (int i = 0; i < 4; ++i)
        all.append({QStringLiteral("P%1").arg(i + 1), &m_points[i]});
    all.append({QStringLiteral("Test"), &m_testPoint});
    return all;
}

void FourPointPanel::fillFields(const StationConfig& config)
{
    const FourPointCalibration& stored = config.fourPoint;
    m_points = stored.pixelPoints;
    m_testPoint = stored.testPoint;
    const QVector<Marker> all = markers();
    for (const Marker& marker : all)
        showPoint(marker.name);
    const Fields fields = realFields();
    for (int i = 0; i < 4; ++i) {
        fields[2 * i]->setText(FieldNumber::text(stored.realPoints[i].x()));
        fields[2 * i + 1]->setText(FieldNumber::text(stored.realPoints[i].y()));
    }
    m_form->m_lineEdit_Xoffset->setText(FieldNumber::text(stored.xOffset));
    m_form->m_lineEdit_Yoffset->setText(FieldNumber::text(stored.yOffset));
    m_form->checkBox_XY_1->setChecked(stored.swapXY);
}

void FourPointPanel::showPoint(const QString& name)
{
    if (name == QLatin1String("Test"))
        return showTestPoint();
    const int i = name.rightRef(1).toInt() - 1;
    const Fields fields = pixelFields();
    fields[2 * i]->setText(QString::number(m_points[i].x()));
    fields[2 * i + 1]->setText(QString::number(m_points[i].y()));
}

void FourPointPanel::showTestPoint()
{
    m_form->label_testPixPoint->setText(shown(m_testPoint));
    const AffineMap& inForce = ksGlobalConfig::instance()->station(station()).fourPoint.map;
    m_form->label_testRealPoint->setText(shown(Calibration::fourPoint(inForce).toMachine(m_testPoint)));
}

QVector<QLineEdit*> FourPointPanel::numberFields() const
{
    const Fields fields = realFields();
    QVector<QLineEdit*> numbers(fields.cbegin(), fields.cend());
    return numbers << m_form->m_lineEdit_Xoffset << m_form->m_lineEdit_Yoffset;
}

bool FourPointPanel::isMapChanged(const StationConfig& stored) const
{
    const Fields fields = realFields();
    return m_points != stored.fourPoint.pixelPoints || !stored.fourPointCalibration().problem().isEmpty() ||
           std::any_of(fields.cbegin(), fields.cend(), [](const QLineEdit* field) { return field->isModified(); });
}

void FourPointPanel::store(StationConfig& config)
{
    FourPointCalibration& stored = config.fourPoint;
    const std::array<QPointF, 4> real = realPoints();
    if (isMapChanged(config))
        stored.map = solveAffine(m_points, real);
    stored.realPoints = real;
    stored.pixelPoints = m_points;
    stored.testPoint = m_testPoint;
    stored.swapXY = m_form->checkBox_XY_1->isChecked();
    stored.xOffset = FieldNumber::kept(m_form->m_lineEdit_Xoffset->text(), stored.xOffset);
    stored.yOffset = FieldNumber::kept(m_form->m_lineEdit_Yoffset->text(), stored.yOffset);
    config.spoiledFourPoint = {};
}

void FourPointPanel::showStored(const StationConfig&)
{
    showTestPoint();
}

/// A residual that was there before was answered for already.
QStringList FourPointPanel::doubts(const StationConfig& stored, const StationConfig& wanted) const
{
    const QString doubt = fourPointDoubt(wanted);
    const bool same = wanted.fourPoint.pixelPoints == stored.fourPoint.pixelPoints &&
                      wanted.fourPoint.realPoints == stored.fourPoint.realPoints &&
                      wanted.fourPointCalibration().problem().isEmpty();
    return doubt.isEmpty() || same ? QStringList() : QStringList(doubt);
}

CalibrationPanel::Hints FourPointPanel::hints()
{
    Hints hints;
    const std::array<QPointF, 4> real = realPoints();
    pointWarnings(real, hints.warnings);
    const Calibration map = mapFromFields();
    if (!std::isfinite(map.mmPerPixel()))
        hints.warnings << tr("场景坐标过大，无法计算");
    const QPointF there = map.toMachine(m_testPoint);
    const std::optional<QPointF> again = map.toPixel(there);
    if (!again)
        return hints;
    const double xScale = map.mmPerPixelX();
    const double yScale = map.mmPerPixelY();
    hints.facts
        << tr("X 方向：1 px = %1 mm，1 mm = %2 px").arg(FieldNumber::text(xScale), FieldNumber::text(1.0 / xScale));
    hints.facts
        << tr("Y 方向：1 px = %1 mm，1 mm = %2 px").arg(FieldNumber::text(yScale), FieldNumber::text(1.0 / yScale));
    const QPointF residual = map.toMachine(m_points[3]) - real[3];
    hints.facts << tr("P4 残差：X %1 mm，Y %2 mm").arg(fixed3(residual.x()), fixed3(residual.y()));
    hints.facts << tr("测试点往返：%1 → %2，误差 %3 px")
                       .arg(shown(there), shown(*again), fixed3(QLineF(*again, m_testPoint).length()));
    return hints;
}

void FourPointPanel::pointWarnings(const std::array<QPointF, 4>& real, QStringList& warnings)
{
    for (int i = 0; i < 3; ++i) {
        for (int j = i + 1; j < 3; ++j) {
            if (m_points[i] == m_points[j])
                warnings << tr("P%1 与 P%2 重合").arg(i + 1).arg(j + 1);
        }
    }
    if (nearlyCollinear(m_points[0], m_points[1], m_points[2]))
        warnings << tr("图像点 P1、P2、P3 共线");
    if (nearlyCollinear(real[0], real[1], real[2]))
        warnings << tr("场景点 P1、P2、P3 共线");
    const QString outside = outsideWarning();
    if (!outside.isEmpty())
        warnings << outside;
    warnings << numberWarnings();
}

Calibration FourPointPanel::calibration(const StationConfig& config) const
{
    return config.fourPointCalibration();
}

void FourPointPanel::draw(PointDrawing& drawing)
{
    drawing.setLines(QVector<QPointF>{fromCenter(m_points[0]), fromCenter(m_points[1]), fromCenter(m_points[2])}, true);
    if (const auto expected = mapFromFields().toPixel(realPoints()[3]))
        drawing.setExpected(fromCenter(QPoint()) + *expected, fromCenter(m_points[3]));
    else
        drawing.hideExpected();
}

void FourPointPanel::retranslate()
{
    m_form->retranslateUi(this);
}
