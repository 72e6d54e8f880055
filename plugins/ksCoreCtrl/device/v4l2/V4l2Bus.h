#pragma once

#include "../CameraDevice.h"
#include "V4l2System.h"

#include <valvecell/ICameraDiscovery.h>

#include <QCoreApplication>

/// Which USB cameras there are. Any thread.
class V4l2Bus
{
    Q_DECLARE_TR_FUNCTIONS(V4l2Bus)

public:
    struct Found
    {
        DeviceIdentity identity; ///< its address is the path; its user name is empty
        QString port;            ///< where it is plugged in, as "usb-0000:00:14.0-1"
        QString problem;         ///< why it cannot be opened
    };

    explicit V4l2Bus(V4l2System& system);

    /// Those that deliver pictures: a camera has nodes for other things, too.
    QVector<Found> look() const;
    /// The cameras to be configured. Where two say the same serial number, it counts as none, and
    /// each is named by its port.
    QVector<FoundCamera> cameras() const;

    /// The path of the one camera that `wanted` names: a path, serial number, port or model. Empty, with a problem, for
    /// none and for several.
    QString locate(const QString& wanted, QString* problem) const;

    /// Whether a node delivers pictures through buffers; if so, fills in name and port.
    static QString identify(V4l2System& system, int descriptor, Found* found);

private:
    V4l2System& m_system;
};
