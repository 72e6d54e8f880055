#pragma once

#include "config/StationConfig.h"

#include <QDateTime>
#include <QJsonObject>
#include <QVector>

/// A calibration of a station as it was applied.
struct AppliedCalibration
{
    QDateTime time;
    QString user;       ///< empty: nobody was logged in, or it was in force before the first one that was kept
    QJsonObject values; ///< by the keys of "user/globalConfig.json"
};

/// What was applied to a station, a line of JSON each in "user/calibrations.jsonl"; the oldest of all stations go when
/// there are too many. GUI thread.
class CalibrationHistory
{
public:
    enum class Kind { TwoPoint, FourPoint };
    static constexpr int maxLines = 2000;

    CalibrationHistory(int station, Kind kind);

    Kind kind() const { return m_kind; }

    static QString path();

    /// The latest first. Lines that are damaged, or miss a value, are left out.
    QVector<AppliedCalibration> read() const;

    /// Keeps `applied`, unless it is the one kept last; and before it `former`, which it takes the place of, when that
    /// is usable and not the one kept last. Returns false with file and reason when the file cannot be read or written.
    bool add(const StationConfig& former, const StationConfig& applied, const QString& user, QString* error) const;

    /// The values of a station's calibration, and the same put into a station.
    QJsonObject valuesOf(const StationConfig& config) const;
    StationConfig restored(const StationConfig& config, const QJsonObject& values) const;

private:
    template <typename Visitor>
    void visit(Visitor& visitor, StationConfig& config) const;
    QByteArray line(const AppliedCalibration& applied) const;

    int m_station;
    Kind m_kind;
};
