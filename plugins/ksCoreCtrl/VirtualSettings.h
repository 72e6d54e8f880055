#pragma once

#include <QCoreApplication>
#include <QString>
#include <QVariantMap>

/// The settings of a virtual camera, by the names of ICameraSettings.
struct VirtualSettings
{
    Q_DECLARE_TR_FUNCTIONS(VirtualSettings)

public:
    static constexpr double maxMs = 10'000;

    QString folder;        ///< of the images; absolute, or relative to the home
    double exposureMs = 5; ///< from 0 to maxMs, like the next
    double transferMs = 10;

    /// Takes over the settings named in `changes`. On failure nothing is changed and `error` says which is wrong.
    bool change(const QVariantMap& changes, QString* error);

    QVariantMap toMap() const;

    /// The folder with its full path; empty when none is set.
    QString folderPath() const;
};
