#pragma once

#include "CameraCodes.h"

#include <QString>
#include <QVariantMap>
#include <QVector>

/// A camera that was found on network or bus, configured or not.
struct FoundCamera
{
    CameraType type = CameraType::Unknown;
    QString vendor;
    QString model;
    QString serial;
    QString userName;     ///< that somebody gave it; often empty
    QString address;      ///< network address, or device path
    QString configuredAs; ///< the key of the configured camera that opened it; empty when there is none
    QString problem;      ///< why it cannot be opened as it is, with the remedy, in the operator's language
    QVariantMap settings; ///< those that make a configured camera open this one, by ICameraParameters' names
};

/// Optional interface of a core-control module: which cameras there are to be configured. GUI thread; returns at once.
class ICameraDiscovery
{
public:
    static constexpr const char* id = "valvecell.ICameraDiscovery/1";

    /// Looks in the background; while that is going on, another call changes nothing.
    virtual void discover() = 0;
    virtual bool isDiscovering() = 0;
    /// What the last look found, in a steady order; empty before its end.
    virtual QVector<FoundCamera> found() = 0;

protected:
    ~ICameraDiscovery() = default;
};
