#include "CellTruth.h"

#include "config/ksGlobalConfig.h"

#include <valvecell/HomeFiles.h>

#include <QDir>
#include <QJsonArray>

#include <algorithm>

namespace {

/// Nothing when a key has a wrong type.
std::optional<KnownImage> imageFrom(const QJsonObject& entry)
{
    const auto value = [&](const char* key) { return entry[QLatin1String(key)]; };
    const bool hole = value("hole").toBool();
    const int index = value("index").toInt(-1);
    if (!value("file").isString() || !value("hole").isBool() || index < 0 || index > 32767)
        return {};
    if (hole && !value("angle").isDouble())
        return {};
    KnownImage image;
    image.file = value("file").toString();
    image.model = value("model").toString();
    image.index = index;
    image.hole = hole;
    image.angle = value("angle").toDouble();
    if (value("x").isDouble() && value("y").isDouble())
        image.center = QPointF(value("x").toDouble(), value("y").toDouble());
    return image;
}

bool readTruth(const QString& path, QVector<KnownImage>* images, QString* error)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(path);
    *error = read.error;
    if (read.state != HomeFiles::JsonRead::Good)
        return read.state == HomeFiles::JsonRead::Missing;
    const QJsonArray entries = read.object[QLatin1String("images")].toArray();
    for (int i = 0; i < entries.size(); ++i) {
        const auto image = imageFrom(entries[i].toObject());
        if (!image) {
            *error = QStringLiteral("%1: entry %2 of \"images\" is no image").arg(path).arg(i + 1);
            return false;
        }
        images->append(*image);
    }
    return true;
}

/// In plain order of the names, as the virtual cameras take them: "10" before "2".
QStringList imageFiles(const QDir& folder)
{
    static const QStringList kinds{"*.bmp", "*.png", "*.jpg", "*.jpeg", "*.pgm", "*.ppm", "*.tif", "*.tiff"};
    QStringList files = folder.entryList(kinds, QDir::Files, QDir::Unsorted);
    std::sort(files.begin(), files.end());
    return files;
}

/// Inverse of X = px scale + xOffset, Y = py scale + yOffset, swapped at the end.
std::optional<QPointF> fromTwoPoint(const StationConfig& station, QPointF point)
{
    const TwoPointCalibration& calibration = station.twoPoint;
    if (calibration.scale == 0)
        return {};
    if (station.swapXY)
        point = point.transposed();
    return (point - QPointF(calibration.xOffset, calibration.yOffset)) / calibration.scale;
}

/// Inverse of the affine map; the offsets belong to X and Y after the swap of the mapped point's axes.
std::optional<QPointF> fromFourPoint(const FourPointCalibration& calibration, QPointF point)
{
    if (calibration.swapXY)
        point = point.transposed();
    const auto& m = calibration.map;
    const QPointF q = point - QPointF(calibration.xOffset + m[2], calibration.yOffset + m[5]);
    const double determinant = m[0] * m[4] - m[1] * m[3];
    if (determinant == 0)
        return {};
    return QPointF(m[4] * q.x() - m[1] * q.y(), m[0] * q.y() - m[3] * q.x()) / determinant;
}

} // namespace

bool ImageCycle::load(const QString& folder, QString* error)
{
    const QStringList files = imageFiles(QDir(folder));
    if (files.isEmpty()) {
        *error = QStringLiteral("%1: no images").arg(folder);
        return false;
    }
    QVector<KnownImage> known;
    if (!readTruth(folder + QStringLiteral("/truth.json"), &known, error))
        return false;
    m_images.clear();
    for (const QString& file : files) {
        const auto it =
            std::find_if(known.cbegin(), known.cend(), [&](const KnownImage& image) { return image.file == file; });
        KnownImage unknown;
        unknown.file = file;
        m_images.append(it == known.cend() ? unknown : *it);
    }
    return true;
}

bool CellCalibration::load(const QString& home, QString* error)
{
    if (!QDir(home).exists()) {
        *error = QStringLiteral("%1: no such folder").arg(home);
        return false;
    }
    HomeFiles::setHome(QDir(home).absolutePath());
    return ksGlobalConfig::instance()->load(error);
}

std::optional<QPointF> CellCalibration::pixelOf(int station, QPointF point)
{
    const ksGlobalConfig* config = ksGlobalConfig::instance();
    const StationConfig& calibration = config->station(station);
    return config->use4pointstand ? fromFourPoint(calibration.fourPoint, point) : fromTwoPoint(calibration, point);
}
