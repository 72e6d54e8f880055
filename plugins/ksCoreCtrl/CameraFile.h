#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

#include <mutex>

/// One entry of camera.json.
struct CameraConfig
{
    QString key;          ///< the name by which the program knows the camera; never blank
    int type = 0;         ///< a type code of CameraCodes.h as written; -1 when it is no whole number
    QVariantMap settings; ///< everything else of the entry
};

/// The cameras' configuration, "user/camera.json" in the home:
///
///     {"cameras": [{"key": "cam1", "type": 100, "folder": "images/1", "exposure_ms": 5, "transfer_ms": 10}, ...]}
///
/// A file that is missing or cannot be read gives no camera. An entry without a key of its own is left out; one whose
/// other values are wrong stays in, for the camera made from it to say what is wrong. Each loss is reported by a
/// warning that names file and place. Any thread.
class CameraFile
{
    Q_DECLARE_TR_FUNCTIONS(CameraFile)

public:
    /// More entries than any cell has; those beyond are left out.
    static constexpr int maxCameras = 64;

    explicit CameraFile(QString path);

    /// Why a new camera cannot have that key, in the operator's language; empty when it can.
    static QString keyProblem(const QString& key);

    QVector<CameraConfig> read();

    /// Writes some settings of one camera, leaving all else in the file as it is, what was changed there by hand since
    /// included. A file that no longer parses is kept beside, and what was read last is written with the change.
    bool store(const QString& key, const QVariantMap& settings, QString* error);

    /// Takes out the removed cameras, changes those of `known` and appends those of `added`, in one step, and leaves
    /// all else as store() does. `known` comes back with what the file says of them beyond what was given.
    bool change(QVector<CameraConfig>* known, const QVector<CameraConfig>& added, const QStringList& removed,
                QString* error);

private:
    QJsonObject present() const;
    static bool fail(QString* error, const QString& reason);
    void warn(const QString& place, const char* what) const;

    const QString m_path;
    std::mutex m_mutex; // protects the file, and what was read of it
    QJsonObject m_lastRead;
};
