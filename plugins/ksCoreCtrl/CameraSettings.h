#pragma once

#include <valvecell/ICameraParameters.h>

/// The settings of one camera: a value for each of its parameters, always right but for initial values. One thread.
class CameraSettings
{
public:
    /// The parameters of a type of camera, in the present language.
    using Parameters = QVector<CameraParameter> (*)();

    CameraSettings(QString cameraKey, Parameters parameters);

    /// Takes over those settings that are right, as far as there are parameters for them, since a wrong one must not
    /// cost the others. Says what is wrong with one of the rest; empty when there is none.
    QString takeOver(const QVariantMap& settings);

    /// Takes over all of the settings, or none and `error` says which is wrong.
    bool change(const QVariantMap& settings, QString* error);

    /// Why the values as they are cannot be used: one that has to be given by somebody is not. Empty when they can.
    QString problem() const { return CameraParameters::problem(m_camera, m_parameters(), m_values); }

    const QVariantMap& values() const { return m_values; }
    double number(const char* name) const { return m_values.value(QLatin1String(name)).toDouble(); }
    QString text(const char* name) const { return m_values.value(QLatin1String(name)).toString(); }

private:
    QString m_camera;
    Parameters m_parameters;
    QVariantMap m_values;
};
