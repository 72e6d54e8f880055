#pragma once

#include <valvecell/ICameraParameters.h>

#include <QCoreApplication>

#include <arv.h>
#include <chrono>

/// Writes the program's settings to a camera whose acquisition is stopped. The camera's thread.
class AravisSettings
{
    Q_DECLARE_TR_FUNCTIONS(AravisSettings)

public:
    enum class Trigger {
        Software,
        Line,
        FreeRun, ///< of a camera that cannot be triggered by software
        None,    ///< the wanted source is not there; pictures of another moment would be of no use
    };

    static QVector<CameraParameter> parameters();
    /// The setting that decides a feature of the camera; empty when none does.
    static QString settingOf(const QString& feature);

    AravisSettings(ArvCamera* camera, const QVariantMap& settings);

    /// False when the camera does not answer or does not let itself be set; error() says what.
    bool writeAll();
    /// Those that can change while images come.
    bool writeExposure();

    Trigger trigger() const { return m_trigger; }
    /// As the camera has it; 0 when it has none.
    std::chrono::microseconds exposure() const { return m_exposure; }
    const QString& error() const { return m_error; }
    const QMap<QString, QString>& missing() const { return m_missing; }
    /// What was done otherwise than wanted, each a sentence.
    const QStringList& adjusted() const { return m_adjusted; }

private:
    bool writeTrigger();
    bool setTrigger(const char* source);
    bool writeGain();
    bool writeRegion();
    bool writeTransport();
    int side(const char* feature, int wanted, int limit);
    double within(const char* setting, double wanted, double low, double high);
    int whole(const char* name) const { return m_settings.value(QLatin1String(name)).toInt(); }
    /// Notes the error; false when the camera is gone with it.
    bool check(const QString& what, const GError* error);
    void miss(const char* setting, const QString& why);

    ArvCamera* const m_camera;
    const QVariantMap m_settings;
    Trigger m_trigger = Trigger::Software;
    std::chrono::microseconds m_exposure{0};
    QString m_error;
    QMap<QString, QString> m_missing;
    QStringList m_adjusted;
};
