#pragma once

#include "V4l2System.h"

#include <valvecell/ICameraFeatures.h>
#include <valvecell/ICameraParameters.h>

#include <QCoreApplication>

/// The controls of one open device: exposure and gain as settings, and all of them as features. Those of 64 bits and
/// texts, which need another call and which cameras hardly have, are left out. The camera's thread.
class V4l2Controls
{
    Q_DECLARE_TR_FUNCTIONS(V4l2Controls)

public:
    /// "exposure_ms" and "gain_percent".
    static QVector<CameraParameter> parameters();

    V4l2Controls(V4l2System& system, int descriptor);

    /// Puts exposure and gain into force, and switches off what would change them by itself. Empty, or why the camera
    /// could not be asked; what it cannot do as wanted is said by missing() and warning().
    QString apply(const QVariantMap& settings);
    QString warning() const { return m_warnings.join(QLatin1Char('\n')); }
    QMap<QString, QString> missing() const { return m_missing; }
    /// The exposure in force, milliseconds; 0 when the camera does not say.
    double exposureMs() const;

    /// "exposure_time_absolute" for "Exposure Time, Absolute", in the driver's order.
    QStringList names() const;
    CameraFeature feature(const QString& name) const;
    /// Empty, or why the camera did not take it.
    QString write(const QString& name, const QVariant& value);

private:
    struct Control
    {
        quint32 id;
        quint32 type;
        QString name;
        QString caption;
        QString category;
    };

    const Control* find(const QString& name) const;
    QString applyExposure(double milliseconds);
    QString applyGain(double percent);
    void switchOff(quint32 id) const;
    int set(quint32 id, qint32 value) const;
    void describe(const Control& control, CameraFeature* feature) const;
    QVector<QPair<qint32, QString>> menu(const Control& control) const;
    QString range(const Control& control) const;

    V4l2System& m_system;
    const int m_descriptor;
    QVector<Control> m_controls;
    QStringList m_warnings;
    QMap<QString, QString> m_missing;
};
