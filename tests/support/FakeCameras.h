#pragma once

#include <valvecell/ICameraCapture.h>
#include <valvecell/ICameraDiscovery.h>
#include <valvecell/ICameraFeatures.h>
#include <valvecell/ICameraList.h>
#include <valvecell/ICameraParameters.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>
#include <valvecell/IConcurrentCalls.h>
#include <valvecell/ICoreCtrl.h>

/// A core control that a test drives: it notes what it is asked for, and answers and delivers what the test says. Of
/// the optional interfaces it offers those that the test names by their ids.
struct FakeCameras : ICoreCtrl,
                     ICameraSettings,
                     ICameraParameters,
                     ICameraList,
                     ICameraPreview,
                     ICameraFeatures,
                     ICameraDiscovery,
                     ICameraCapture,
                     IConcurrentCalls
{
    explicit FakeCameras(QByteArrayList offered = {})
        : offers(std::move(offered))
    {
    }

    QByteArrayList offers;
    QStringList keys{QStringLiteral("cam1"), QStringLiteral("cam2")};
    CameraType type = CameraType::Gige;   ///< of all
    QStringList asked;                    ///< keys of triggers
    std::function<void()> within = [] {}; ///< what trigger() and capture() do besides
    bool numbered = false;                ///< captures with numbers; to be set before the start
    QVector<quint64> numbers;
    ImageCallback deliver;
    ICameraCapture::Callback end;
    NotificationCallback notify;

    QMap<QString, QString> messages; ///< by key, as the next
    QVariantMap stored;              ///< settings of all
    QVector<CameraParameter> described;
    QMap<QString, QString> missing;
    QImage picture; ///< for each preview
    bool holding = false;
    QVector<ICameraPreview::Callback> held; ///< previews that were not answered

    QVector<CameraFeature> features;
    QString readError;
    QStringList written;             ///< "name=value"
    QVector<WrittenCallback> writes; ///< not yet answered
    CameraStatistics statisticsNow;

    bool discovering = false;
    QVector<FoundCamera> lastFound;

    void* extension(const char* id) override
    {
        const QByteArray name(id);
        if (numbered && name == ICameraCapture::id)
            return static_cast<ICameraCapture*>(this);
        if (!offers.contains(name))
            return nullptr;
        return name == ICameraSettings::id     ? static_cast<ICameraSettings*>(this)
               : name == ICameraParameters::id ? static_cast<ICameraParameters*>(this)
               : name == ICameraList::id       ? static_cast<ICameraList*>(this)
               : name == ICameraPreview::id    ? static_cast<ICameraPreview*>(this)
               : name == ICameraFeatures::id   ? static_cast<ICameraFeatures*>(this)
               : name == ICameraDiscovery::id  ? static_cast<ICameraDiscovery*>(this)
               : name == IConcurrentCalls::id  ? static_cast<IConcurrentCalls*>(this)
                                               : static_cast<void*>(nullptr);
    }

    QStringList cameraKeys() override { return keys; }
    void setRequestCallback(RequestCallback) override {}
    void setImageCallback(ImageCallback) override {}
    void setNotificationCallback(NotificationCallback) override {}
    void start() override {}
    void stop() override { deliver = nullptr; }
    void trigger(const QStringList& cameras) override
    {
        asked << cameras;
        within();
    }
    void setCaptureCallback(ICameraCapture::Callback) override {}
    void capture(const QString& camera, quint64 number) override
    {
        asked << camera;
        numbers << number;
        within();
    }

    CameraStatus status(const QString& key) override
    {
        return {type, CameraState::Running, {}, {}, messages.value(key)};
    }
    QVariantMap settings(const QString&) override { return stored; }
    bool applySettings(const QString&, const QVariantMap& settings, QString*) override
    {
        for (auto it = settings.begin(); it != settings.end(); ++it)
            stored.insert(it.key(), it.value());
        return true;
    }
    QVector<CameraParameter> parameters(CameraType, const QString&) override { return described; }

    QVector<CameraType> drivenTypes() override { return {CameraType::Virtual, type}; }
    QVariantMap defaultSettings(CameraType) override { return CameraParameters::initialValues(described); }
    bool isNewKey(const QString& key, QString* error) override
    {
        const bool isNew = !key.isEmpty() && !keys.contains(key);
        if (error && !isNew)
            *error = QStringLiteral("blank or taken");
        return isNew;
    }
    bool changeCameras(const QVector<CameraEntry>& put, const QStringList&, QString*) override
    {
        for (const CameraEntry& entry : put) {
            keys << entry.key;
            stored = entry.settings;
        }
        return true;
    }

    bool preview(const QString&, ICameraPreview::Callback callback) override
    {
        if (holding)
            held << callback;
        else
            callback(picture, picture.isNull() ? QStringLiteral("no picture") : QString());
        return true;
    }

    void readFeatures(const QString&, FeaturesCallback callback) override { callback(features, readError); }
    void writeFeature(const QString&, const QString& name, const QVariant& value, WrittenCallback callback) override
    {
        written << name + QLatin1Char('=') + value.toString();
        writes << std::move(callback);
    }
    QMap<QString, QString> missingSettings(const QString&) override { return missing; }
    CameraStatistics statistics(const QString&) override { return statisticsNow; }

    void discover() override { discovering = true; }
    bool isDiscovering() override { return discovering; }
    QVector<FoundCamera> found() override { return discovering ? QVector<FoundCamera>() : lastFound; }
};
