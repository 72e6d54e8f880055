#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>

/// One feature as a camera describes it itself.
struct CameraFeature
{
    enum class Kind { Number, Whole, Switch, Choice, Text, Command };

    QString name;     ///< standard name, for example "AcquisitionFrameRate"
    QString caption;  ///< the camera's own; the name when it has none
    QString category; ///< the camera's own
    Kind kind = Kind::Number;
    QVariant value; ///< double, qlonglong, bool or QString; invalid for a command, or when it cannot be read now
    double minimum = 0;
    double maximum = 0;
    QString unit;
    QStringList choices;
    QString tip;
    QString locked; ///< why it cannot be written now, in the operator's language; empty when it can
};

/// How a camera's captures went since it was opened.
struct CameraStatistics
{
    quint64 images = 0;     ///< whole ones
    quint64 incomplete = 0; ///< refused, since parts were missing
    quint64 lostPackets = 0;
    quint64 resentPackets = 0;
    quint64 reopened = 0;    ///< since the start of the program
    double imagesPerSec = 0; ///< of the last seconds
};

/// Optional interface of a core-control module: what a camera can do beyond the settings that all have. GUI thread; all
/// return at once, and callbacks come exactly once, from any thread.
class ICameraFeatures
{
public:
    static constexpr const char* id = "valvecell.ICameraFeatures/1";

    /// `error` is empty, or says in the operator's language why there is nothing.
    using FeaturesCallback = std::function<void(const QVector<CameraFeature>& features, const QString& error)>;
    using WrittenCallback = std::function<void(const QString& error)>;

    /// All features that the camera shows, in its own order.
    virtual void readFeatures(const QString& cameraKey, FeaturesCallback callback) = 0;
    /// Writes one feature, and stores it for the next opening when the camera took it.
    virtual void writeFeature(const QString& cameraKey, const QString& name, const QVariant& value,
                              WrittenCallback callback) = 0;

    /// The camera's settings, by ICameraParameters' names, that this camera has not, and why, in the operator's
    /// language. Empty before it was open once.
    virtual QMap<QString, QString> missingSettings(const QString& cameraKey) = 0;

    virtual CameraStatistics statistics(const QString& cameraKey) = 0;

protected:
    ~ICameraFeatures() = default;
};
