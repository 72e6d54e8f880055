#include "DriverlessCamera.h"

#include "CameraEvents.h"

namespace {

/// The code as a type of camera; Unknown for a code that names none.
CameraType knownType(int code)
{
    const auto type = CameraType(code);
    switch (type) {
    case CameraType::Unknown:
    case CameraType::Virtual:
    case CameraType::BitFlow:
    case CameraType::Gige:
    case CameraType::Usb:
    case CameraType::Hik:
    case CameraType::Vimba:
    case CameraType::Baumer:
    case CameraType::AdLink:
    case CameraType::DaHua:
    case CameraType::Basler:
    case CameraType::PtGray:
    case CameraType::Euresys:
    case CameraType::Dalsa:
        return type;
    }
    return CameraType::Unknown;
}

} // namespace

DriverlessCamera::DriverlessCamera(CameraConfig config, CameraEvents& events)
    : m_config(std::move(config))
    , m_events(events)
{
}

void DriverlessCamera::trigger()
{
    m_events.notify(Topics::cameraUnusable, m_config.key, status().message);
}

CameraStatus DriverlessCamera::status() const
{
    CameraStatus status;
    status.type = knownType(m_config.type);
    status.message = m_config.type < 0 ? tr("相机类型不是数字") : tr("没有相机类型 %1 的驱动程序").arg(m_config.type);
    return status;
}

bool DriverlessCamera::accepts(const QVariantMap&, QString* error) const
{
    if (error)
        *error = status().message;
    return false;
}
