#pragma once

#include <QSize>
#include <QString>
#include <QVector>

#include <chrono>

/// One camera as the plant configured it.
struct CameraEntry
{
    QString key; ///< the name by which the program knows the camera
    QSize size;  ///< of its images, pixels
    std::chrono::milliseconds exposure{0};
};

/// Reads the cameras of "user/camera.json" in the home, the file of the bundled core control:
///
///     {"cameras": [{"key": "cam1", "width": 1280, "height": 1024, "exposure_ms": 5}, ...]}
///
/// "key" alone is needed; a number that is missing, wrong or out of range is replaced by the one above. Empty when the
/// file cannot be read. What is wrong is told by a warning that names file and place.
QVector<CameraEntry> readCameraList();
