#pragma once

#include "../CameraDevice.h"

#include <valvecell/ICameraDiscovery.h>

#include <QCoreApplication>

/// What the library finds on all networks and USB ports. Any thread; one look at a time, since the library keeps one
/// list for all.
class AravisBus
{
    Q_DECLARE_TR_FUNCTIONS(AravisBus)

public:
    struct Seen
    {
        DeviceIdentity identity; ///< of a camera on USB without an address
        QString id;              ///< by which the library opens it
    };

    /// Takes about a second; what a look shorter ago than that found is given again.
    static QVector<Seen> look();
    static QVector<FoundCamera> find();

    /// Whether somebody who typed `text` means that camera: serial number, user name, address or the library's id.
    static bool isMeant(const Seen& seen, const QString& text);
    static bool isAddress(const QString& text);

private:
    static QString problem(const Seen& seen);
};
