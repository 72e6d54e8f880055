#include "CameraFactory.h"

#include "CameraEvents.h"
#include "CameraFile.h"
#include "VirtualCamera.h"
#include "device/DeviceDriver.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

const CameraDriver virtualDriver{VirtualCamera::type, VirtualCamera::parameters,
                                 [](const CameraConfig& config, CameraEvents& events) -> std::unique_ptr<Camera> {
                                     return std::make_unique<VirtualCamera>(config, events);
                                 },
                                 nullptr};

/// A new type of camera needs its class and an entry here.
QVector<const CameraDriver*> drivers()
{
    QVector<const CameraDriver*> all{&virtualDriver, aravisDriver(), v4l2Driver()};
    all.removeAll(nullptr);
    return all;
}

const CameraDriver* driverOf(CameraType type)
{
    const auto all = drivers();
    const auto found =
        std::find_if(all.begin(), all.end(), [type](const CameraDriver* one) { return one->type == type; });
    return found == all.end() ? nullptr : *found;
}

/// Stands for a configured camera of a type that this module cannot drive.
class DriverlessCamera final : public Camera
{
    Q_DECLARE_TR_FUNCTIONS(DriverlessCamera)

public:
    DriverlessCamera(CameraConfig config, CameraEvents& events)
        : m_config(std::move(config))
        , m_events(events)
    {
    }

    void open() override {}
    void close() override {}
    void trigger(std::optional<quint64> number) override
    {
        m_events.refuse(m_config.key, number, Topics::cameraUnusable, status().message);
    }
    bool preview(ICameraPreview::Callback) override { return false; }
    CameraStatus status() const override;
    CameraStatistics statistics() const override { return {}; }
    QVariantMap settings() const override { return {}; }
    bool accepts(const QVariantMap& settings, QString* error) const override;
    void apply(const QVariantMap&) override {}

private:
    const CameraConfig m_config;
    CameraEvents& m_events;
};

/// A code that names no type counts as unknown.
CameraStatus DriverlessCamera::status() const
{
    CameraStatus status;
    for (const CameraTypeName& known : cameraTypeNames) {
        if (int(known.type) == m_config.type)
            status.type = known.type;
    }
    status.message = m_config.type < 0 ? tr("相机类型不是数字") : tr("没有相机类型 %1 的驱动程序").arg(m_config.type);
    return status;
}

bool DriverlessCamera::accepts(const QVariantMap&, QString* error) const
{
    if (error)
        *error = status().message;
    return false;
}

} // namespace

std::unique_ptr<Camera> makeCamera(const CameraConfig& config, CameraEvents& events)
{
    if (const CameraDriver* known = driverOf(CameraType(config.type)))
        return known->make(config, events);
    return std::make_unique<DriverlessCamera>(config, events);
}

QVector<CameraType> drivenTypes()
{
    QVector<CameraType> types;
    for (const CameraDriver* one : drivers())
        types.append(one->type);
    return types;
}

QVector<CameraParameter> parametersOf(CameraType type)
{
    const CameraDriver* known = driverOf(type);
    return known ? known->parameters() : QVector<CameraParameter>();
}

QVector<FoundCamera> findCameras()
{
    QVector<FoundCamera> found;
    for (const CameraDriver* one : drivers()) {
        if (one->find)
            found += one->find();
    }
    return found;
}
