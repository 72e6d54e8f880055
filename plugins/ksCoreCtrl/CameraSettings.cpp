#include "CameraSettings.h"

CameraSettings::CameraSettings(QString cameraKey, Parameters parameters)
    : m_camera(std::move(cameraKey))
    , m_parameters(parameters)
    , m_values(CameraParameters::initialValues(parameters()))
{
}

QString CameraSettings::takeOver(const QVariantMap& settings)
{
    QString problem;
    const QStringList names = m_values.keys();
    for (const QString& name : names) {
        QString error;
        if (settings.contains(name) && !change({{name, settings.value(name)}}, &error))
            problem = error;
    }
    return problem;
}

bool CameraSettings::change(const QVariantMap& settings, QString* error)
{
    const QString problem = CameraParameters::problem(m_camera, m_parameters(), settings);
    if (!problem.isEmpty()) {
        if (error)
            *error = problem;
        return false;
    }
    for (auto it = settings.begin(); it != settings.end(); ++it) {
        QVariant& value = m_values[it.key()];
        const int type = value.userType(); // of the initial value: whole numbers of a file become what they are to be
        value = it.value();
        value.convert(type);
    }
    return true;
}
