#pragma once

#include "support/Delivered.h"
#include "support/TempHome.h"

#include <valvecell/Extension.h>
#include <valvecell/ICameraCapture.h>
#include <valvecell/ICameraDiscovery.h>
#include <valvecell/ICameraFeatures.h>
#include <valvecell/ICameraList.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <memory>

/// The real module in a home of its own.
class CameraCell : public Delivered
{
public:
    TempHome home;
    std::unique_ptr<ICoreCtrl> core;

    ~CameraCell() { stop(); }

    /// Images tell themselves apart by their width.
    void saveImage(const QString& below, int width) const
    {
        QImage image(width, 3, QImage::Format_Grayscale8);
        image.fill(Qt::gray);
        saveImage(below, image);
    }
    void saveImage(const QString& below, const QImage& image) const
    {
        QDir().mkpath(QFileInfo(home.path(below)).path());
        QVERIFY2(image.save(home.path(below)), qPrintable(below));
    }

    ICoreCtrl* start(const QByteArray& cameraJson)
    {
        if (!cameraJson.isNull())
            home.write(QStringLiteral("/user/camera.json"), cameraJson);
        core.reset(init(QStringLiteral(VALVECELL_BIN_DIR "/ksCoreCtrl"))(nullptr));
        core->start();
        connectTo(*core);
        extensionOf<ICameraCapture>(core.get())->setCaptureCallback([this](const ICameraCapture::Outcome& outcome) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_outcomes.append({outcome, std::chrono::steady_clock::now()});
        });
        return core.get();
    }
    void stop()
    {
        if (core)
            core->stop();
        core.reset();
    }

    ICameraSettings* settings() const { return extensionOf<ICameraSettings>(core.get()); }
    ICameraList* list() const { return extensionOf<ICameraList>(core.get()); }

    /// Asks for an image to look at; its width, or why there is none, is noted.
    bool preview(const QString& key)
    {
        return extensionOf<ICameraPreview>(core.get())->preview(key, [this](const QImage& image, const QString& error) {
            note("preview: " + (image.isNull() ? error : QString::number(image.width())));
        });
    }

    /// Captures with a number; what became of it is noted.
    void capture(const QString& key, quint64 number) { extensionOf<ICameraCapture>(core.get())->capture(key, number); }
    struct Captured
    {
        ICameraCapture::Outcome outcome;
        std::chrono::steady_clock::time_point at;
    };
    QVector<Captured> outcomes() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_outcomes;
    }

    QJsonObject stored() const { return QJsonDocument::fromJson(home.read("/user/camera.json")).object(); }

private:
    mutable std::mutex m_mutex; // protects the one below
    QVector<Captured> m_outcomes;
};
