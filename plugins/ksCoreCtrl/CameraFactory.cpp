#include "CameraFactory.h"

#include "CameraEvents.h"
#include "CameraFile.h"
#include "VirtualCamera.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Driver
{
    CameraType type;
    QVector<CameraParameter> (*parameters)();
    std::unique_ptr<Camera> (*make)(const CameraConfig& config, CameraEvents& events);
};

template <typename Type>
constexpr Driver driver()
{
    return {Type::type, Type::parameters, [](const CameraConfig& config, CameraEvents& events) {
                return std::unique_ptr<Camera>(std::make_unique<Type>(config, events));
            }};
}

/// A new type of camera needs its class and an entry here.
const Driver drivers[] = {driver<VirtualCamera>()};

const Driver* driverOf(CameraType type)
{
    const auto found =
        std::find_if(std::begin(drivers), std::end(drivers), [type](const Driver& one) { return one.type == type; });
    return found == std::end(drivers) ? nullptr : found;
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
    void trigger() override { m_events.notify(Topics::cameraUnusable, m_config.key, status().message); }
    bool preview(ICameraPreview::Callback) override { return false; }
    CameraStatus status() const override;
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
    if (const Driver* known = driverOf(CameraType(config.type)))
        return known->make(config, events);
    return std::make_unique<DriverlessCamera>(config, events);
}

QVector<CameraType> drivenTypes()
{
    QVector<CameraType> types;
    for (const Driver& one : drivers)
        types.append(one.type);
    return types;
}

QVector<CameraParameter> parametersOf(CameraType type)
{
    const Driver* known = driverOf(type);
    return known ? known->parameters() : QVector<CameraParameter>();
}
