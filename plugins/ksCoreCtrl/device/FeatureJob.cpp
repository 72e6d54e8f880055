#include "FeatureJob.h"

#include "CameraDevice.h"

#include <utility>

FeatureJob FeatureJob::reading(ICameraFeatures::FeaturesCallback callback)
{
    FeatureJob job;
    job.m_onRead = std::move(callback);
    return job;
}

FeatureJob FeatureJob::writing(const QString& name, const QVariant& value, ICameraFeatures::WrittenCallback callback)
{
    FeatureJob job;
    job.m_name = name;
    job.m_value = value;
    job.m_onWritten = std::move(callback);
    return job;
}

bool FeatureJob::step(CameraDevice& device)
{
    if (!m_onRead) {
        m_begun = true;
        m_problem = device.writeFeature(m_name, m_value);
        return true;
    }
    if (!std::exchange(m_begun, true))
        m_left = device.featureNames();
    else if (!m_left.isEmpty())
        m_features.append(device.feature(m_left.takeFirst()));
    return m_left.isEmpty();
}

QVariantMap FeatureJob::written() const
{
    const bool holds = m_begun && !m_onRead && m_problem.isEmpty() && m_value.isValid();
    return holds ? QVariantMap{{m_name, m_value}} : QVariantMap();
}

void FeatureJob::tell() const
{
    if (m_onRead)
        m_onRead(m_features, m_features.isEmpty() ? tr("相机没有提供参数列表") : QString());
    else
        m_onWritten(m_problem);
}

void FeatureJob::refuse(const QString& problem) const
{
    if (m_onRead)
        m_onRead({}, problem);
    else
        m_onWritten(problem);
}
