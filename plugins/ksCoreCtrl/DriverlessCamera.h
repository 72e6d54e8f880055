#pragma once

#include "Camera.h"
#include "CameraConfig.h"

#include <QCoreApplication>

class CameraEvents;

/// Stands for a configured camera of a type that this module cannot drive.
class DriverlessCamera final : public Camera
{
    Q_DECLARE_TR_FUNCTIONS(DriverlessCamera)

public:
    DriverlessCamera(CameraConfig config, CameraEvents& events);

    void open() override {}
    void close() override {}
    void trigger() override;
    bool preview(ICameraPreview::Callback) override { return false; }
    CameraStatus status() const override;
    QVariantMap settings() const override { return {}; }
    bool accepts(const QVariantMap& settings, QString* error) const override;
    void apply(const QVariantMap&) override {}

private:
    const CameraConfig m_config;
    CameraEvents& m_events;
};
