#pragma once

#include "config/ksGlobalConfig.h"
#include "dialogs/DialogDriver.h"
#include "support/Delivered.h"
#include "support/TempHome.h"

#include <valvecell/Extension.h>
#include <valvecell/ICameraList.h>
#include <valvecell/ICameraSettings.h>

/// The real core control with two cameras in a home of its own: "左" serves station 1, "右" nobody.
struct CameraCell
{
    TempHome home;
    ksGlobalConfig config;
    std::unique_ptr<ICoreCtrl> core;
    Delivered delivered; ///< what a station would take for a part
    AuditChanges audit;

    CameraCell()
    {
        for (int camera = 1; camera <= 3; ++camera)
            saveImage(camera);
        home.write("/user/camera.json", R"({"note": "夜班", "cameras": [
            {"key": "左", "type": 100, "folder": "images/1", "exposure_ms": 1, "transfer_ms": 1},
            {"key": "右", "type": 100, "folder": "images/2", "exposure_ms": 1, "transfer_ms": 1}]})");
        config.station(1).camKey = left();
        core.reset(Delivered::init(QStringLiteral(VALVECELL_BIN_DIR "/ksCoreCtrl"))(nullptr));
        core->start();
        delivered.connectTo(*core);
    }
    ~CameraCell() { core->stop(); }

    static QString left() { return QStringLiteral("左"); }
    static QString right() { return QStringLiteral("右"); }

    /// Images of the cameras tell themselves apart by their width.
    void saveImage(int camera) const
    {
        QImage image(640 * camera, 512, QImage::Format_Grayscale8);
        for (int y = 0; y < image.height(); ++y)
            std::fill_n(image.scanLine(y), image.width(), uchar(40 + y / 3));
        QDir().mkpath(home.path(QStringLiteral("/images/%1").arg(camera)));
        QVERIFY(image.save(home.path(QStringLiteral("/images/%1/a.bmp").arg(camera))));
    }

    ICameraSettings* settings() const { return extensionOf<ICameraSettings>(core.get()); }
    ICameraList* list() const { return extensionOf<ICameraList>(core.get()); }
    QByteArray file() const { return home.read("/user/camera.json"); }

    bool remove(const QString& key) const { return list()->changeCameras({}, {key}, nullptr); }
    bool add(const QString& key) const
    {
        return list()->changeCameras({{key, CameraType::Virtual, {{"folder", "images/3"}}}}, {}, nullptr);
    }
};
