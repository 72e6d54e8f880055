#pragma once

#include <valvecell/ICameraFeatures.h>

#include <QCoreApplication>

#include <arv.h>

/// The features of a camera by its own GenICam description. The camera's thread.
class AravisFeatures
{
    Q_DECLARE_TR_FUNCTIONS(AravisFeatures)

public:
    explicit AravisFeatures(ArvDevice* device);

    /// Those that are meant to be shown, in the order of their categories.
    QStringList names();
    CameraFeature read(const QString& name);
    /// Empty, or why the camera did not take the value. Its acquisition may have to be stopped before.
    QString write(const QString& name, const QVariant& value);

private:
    void collect(const QString& category, QStringList* names, int depth);
    void readValue(ArvGcNode* node, CameraFeature* feature);
    void readFloat(ArvGcNode* node, CameraFeature* feature);
    void readInteger(ArvGcNode* node, CameraFeature* feature);
    QString lockReason(ArvGcNode* node, const CameraFeature& feature);

    ArvDevice* const m_device;
    QHash<QString, QString> m_categories; ///< of each feature that names() gave
};
