#pragma once

#include <QPointF>
#include <QString>
#include <QVector>

#include <optional>

/// One image of a station's camera and what is known about it.
struct KnownImage
{
    static constexpr int unknownModel = 99;

    QString file;
    QString model;
    int index = unknownModel;      ///< PLC model index
    std::optional<bool> hole;      ///< whether the wheel has a valve hole; nothing when unknown
    double angle = 0;              ///< true angle of the hole, degrees
    std::optional<QPointF> center; ///< true centre of the hole, image pixels
};

/// The images of a folder in the order in which a station's camera delivers them: by name and around again. What is
/// known about them stands in the folder's "truth.json"; images that it does not name, and all when there is none, are
/// unknown.
class ImageCycle
{
public:
    /// False with file and place when the folder is missing or its truth.json is spoiled.
    bool load(const QString& folder, QString* error);

    const KnownImage& next() const { return m_images[m_next]; } ///< what the next trigger will deliver
    void advance() { m_next = (m_next + 1) % m_images.size(); }

private:
    QVector<KnownImage> m_images{KnownImage{}}; ///< never empty
    int m_next = 0;
};

/// How the cell turns pixels into machine coordinates, read from its home, and the way back.
namespace CellCalibration {

/// Reads "globalConfig.json" below `home`; false with the reason when it cannot be used.
bool load(const QString& home, QString* error);

/// The image pixel from which `station` made the machine coordinates `point`; nothing when its calibration has no way
/// back (a scale of 0, a map that folds the plane).
std::optional<QPointF> pixelOf(int station, QPointF point);

} // namespace CellCalibration
