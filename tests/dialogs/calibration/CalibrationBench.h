#pragma once

#include "Resources.h"
#include "config/ksGlobalConfig.h"
#include "dialogs/DialogDriver.h"
#include "graphics/ImageItem.h"
#include "support/Mouse.h"
#include "support/TempHome.h"
#include "viewer/ksImgViewer.h"

#include <QGroupBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPushButton>

/// A home with configuration and reference images, and the hand that calibrates in it.
class CalibrationBench
{
public:
    static constexpr int width = 480;
    static constexpr int height = 320;

    CalibrationBench()
    {
        *config() = ksGlobalConfig();
        for (const char* file : {"/user/StandImage_1.jpg", "/user/StandImage_2.jpg"})
            picture().save(home.path(QLatin1String(file)));
    }

    static ksGlobalConfig* config() { return ksGlobalConfig::instance(); }

    static QImage picture(const QSize& size = {width, height})
    {
        QImage image(size, QImage::Format_Grayscale8);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                image.scanLine(y)[x] = static_cast<uchar>(70 + 60 * ((x / 40 + y / 40) % 2));
        }
        return image;
    }

    /// The configuration file as it lies in the home.
    QJsonObject stored() const { return QJsonDocument::fromJson(home.read("/user/globalConfig.json")).object(); }

    /// The configuration as a newly started program reads it.
    void restart() const
    {
        *config() = ksGlobalConfig();
        QVERIFY(config()->load());
    }

    TempHome home;
};

/// Drags the markers of one station.
class Markers
{
public:
    Markers(QWidget& dialog, int station)
        : m_viewer(*dialog.findChild<ksImgViewer*>(station == 1 ? "m_viewer" : "m_viewer_2"))
        , m_mouse(m_viewer)
    {
    }

    ksImgViewer& viewer() const { return m_viewer; }

    /// Drags a marker with the mouse until it names a pixel.
    void drag(const QString& name, const QPoint& pixel)
    {
        m_viewer.setImageScale(1.0);
        const RoiItem* roi = m_viewer.roi(name);
        m_viewer.centerOn(roi);
        const QPoint from = m_viewer.mapFromScene(roi->scenePos());
        const QPointF way = pixel - QPointF(QPointF(roi->info().center).toPoint());
        m_mouse.drag(from, from + way.toPoint());
    }

    QPointF place(const QString& name) const { return m_viewer.roi(name)->info().center; }

private:
    ksImgViewer& m_viewer;
    Mouse m_mouse;
};
