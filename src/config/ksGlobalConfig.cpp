#include "config/ksGlobalConfig.h"

#include "config/ConfigVisitors.h"
#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

namespace {

/// A key with the number of its station or point, such as "point1_x_2".
class Key
{
public:
    explicit Key(const char* pattern, int number)
        : m_text(QByteArray(pattern).replace('#', QByteArray::number(number)))
    {
    }
    operator const char*() const { return m_text.constData(); }

private:
    QByteArray m_text;
};

template <typename Visitor>
void visitPoint(Visitor& visitor, const char* xKey, const char* yKey, QPoint& point, int fallback)
{
    visitor.field(xKey, point.rx(), fallback);
    visitor.field(yKey, point.ry(), fallback);
}

template <typename Visitor>
void visitTwoPoint(Visitor& visitor, TwoPointCalibration& calibration, int n)
{
    visitPoint(visitor, Key("point1_x_#", n), Key("point1_y_#", n), calibration.point1, 0);
    visitPoint(visitor, Key("point2_x_#", n), Key("point2_y_#", n), calibration.point2, 100);
    visitor.field(Key("length_#", n), calibration.length, 1000.0);
    visitor.field(Key(CalibrationKeys::scale, n), calibration.scale, 1.0);
    visitor.field(Key(CalibrationKeys::xOffset, n), calibration.xOffset, 0.0);
    visitor.field(Key(CalibrationKeys::yOffset, n), calibration.yOffset, 0.0);
}

template <typename Visitor>
void visitFourPoint(Visitor& visitor, FourPointCalibration& calibration)
{
    visitor.field(CalibrationKeys::mapSwapXY, calibration.swapXY, false);
    for (int i = 0; i < 4; ++i)
        visitPoint(visitor, Key("pixpoint#_x", i + 1), Key("pixpoint#_y", i + 1), calibration.pixelPoints[i], 0);
    for (int i = 0; i < 4; ++i) {
        visitor.field(Key("Realpoint#_x", i + 1), calibration.realPoints[i].rx(), 0.0);
        visitor.field(Key("Realpoint#_y", i + 1), calibration.realPoints[i].ry(), 0.0);
    }
    visitPoint(visitor, "testPoint_x", "testPoint_y", calibration.testPoint, 0);
    visitor.field(CalibrationKeys::mapXOffset, calibration.xOffset, 0.0);
    visitor.field(CalibrationKeys::mapYOffset, calibration.yOffset, 0.0);
    for (const int i : {0, 3, 1, 4, 2, 5}) // the file's order
        visitor.field(CalibrationKeys::map[i], calibration.map[i], 0.0);
}

QString filePath()
{
    return platform::inHome(QStringLiteral("/user/globalConfig.json"));
}

/// Each problem is a warning of its own; the caller gets them as one text.
void report(const QStringList& lines, QString* target)
{
    for (const QString& line : lines)
        qWarning("%s", qUtf8Printable(line));
    if (target)
        *target = lines.join(QLatin1Char('\n'));
}

} // namespace

/// Every key of the file, once, in its order.
template <typename Visitor>
void ksGlobalConfig::visit(Visitor& visitor)
{
    StationConfig& first = stations[0];
    StationConfig& second = stations[1];
    visitor.field("station_camkey_1", first.camKey, QString());
    visitor.field("station_camkey_2", second.camKey, QString());
    visitor.field("station_solution_1", first.solution, QString());
    visitor.field("station_solution_2", second.solution, QString());
    visitor.field("station_runModel_1", first.runModel, QString());
    visitor.field("station_runModel_2", second.runModel, QString());
    visitor.field(Key(CalibrationKeys::swapXY, 1), first.swapXY, false);
    visitor.field(Key(CalibrationKeys::swapXY, 2), second.swapXY, false);
    visitor.field("use_clear_protect", useClearProtect, false);
    visitor.field("onlineMode", onlineMode, false);
    visitTwoPoint(visitor, first.twoPoint, 1);
    visitTwoPoint(visitor, second.twoPoint, 2);
    visitor.field("pointCircle", pointCircle, 20);
    visitor.field("trigerFilter", trigerFilter, 1000);
    visitor.field(CalibrationKeys::useFourPoint, use4pointstand, false);
    visitor.object(Key(CalibrationKeys::fourPoint, 1), [&](auto& inner) { visitFourPoint(inner, first.fourPoint); });
    visitor.object(Key(CalibrationKeys::fourPoint, 2), [&](auto& inner) { visitFourPoint(inner, second.fourPoint); });
}

int ksGlobalConfig::stationOfSolution(const QString& solution) const
{
    if (solution.isEmpty())
        return 0;
    return solution == stations[0].solution ? 1 : solution == stations[1].solution ? 2 : 0;
}

int ksGlobalConfig::stationOfCamera(const QString& camKey) const
{
    if (camKey.isEmpty())
        return 0;
    return camKey == stations[0].camKey ? 1 : camKey == stations[1].camKey ? 2 : 0;
}

bool ksGlobalConfig::load(QString* problems)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(filePath());
    if (read.state == HomeFiles::JsonRead::Damaged)
        report({read.error}, problems);
    if (read.object.isEmpty())
        return read.state != HomeFiles::JsonRead::Damaged;
    JsonReadVisitor visitor(read.object, filePath());
    visit(visitor);
    report(visitor.problems(), problems);
    return visitor.problems().isEmpty();
}

QByteArray ksGlobalConfig::text()
{
    JsonWriteVisitor visitor;
    visit(visitor);
    return visitor.text() + '\n';
}

bool ksGlobalConfig::save(QString* error)
{
    QString reason;
    if (HomeFiles::writeJsonText(filePath(), text(), &reason))
        return true;
    report({reason}, error);
    return false;
}
