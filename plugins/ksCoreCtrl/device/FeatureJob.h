#pragma once

#include <valvecell/ICameraFeatures.h>

#include <QCoreApplication>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

class CameraDevice;

/// A reading of all features of a camera, or the writing of one, in steps short enough for triggers to come between.
/// One thread at a time.
class FeatureJob
{
    Q_DECLARE_TR_FUNCTIONS(FeatureJob)

public:
    static FeatureJob reading(ICameraFeatures::FeaturesCallback callback);
    static FeatureJob writing(const QString& name, const QVariant& value, ICameraFeatures::WrittenCallback callback);

    /// The beginning, or one feature. True when nothing is left but to tell().
    bool step(CameraDevice& device);
    /// What was written and holds a value, by name, to be written again at each opening. A command has none.
    QVariantMap written() const;
    /// Calls back with what the steps gave.
    void tell() const;
    /// Calls back with a problem instead.
    void refuse(const QString& problem) const;

private:
    QString m_name;
    QVariant m_value;
    ICameraFeatures::FeaturesCallback m_onRead; ///< empty: a writing
    ICameraFeatures::WrittenCallback m_onWritten;
    QStringList m_left;
    QVector<CameraFeature> m_features;
    QString m_problem;
    bool m_begun = false;
};
