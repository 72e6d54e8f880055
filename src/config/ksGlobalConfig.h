#pragma once

#include "config/StationConfig.h"
#include "config/ks_singleton_base.h"

/// The station-level set-up of the cell, kept in "/user/globalConfig.json" below the home. GUI thread.
///
/// Numbers that JSON cannot carry (NaN, infinity) are written as the texts "nan", "inf" and "-inf" and read back as
/// what they were.
class ksGlobalConfig : public ks_singleton_base<ksGlobalConfig>
{
public:
    /// Gives every field its default.
    ksGlobalConfig();

    std::array<StationConfig, 2> stations;
    bool useClearProtect{}; ///< online: refuse the trigger of a station without a valid model
    bool onlineMode{};      ///< false: model-index frames are ignored and every trigger captures
    int pointCircle{};      ///< diameter of the point markers in the calibration dialogs, image pixels
    int trigerFilter{};     ///< milliseconds in which a further trigger of a station is dropped; 0 drops none
    bool use4pointstand{};  ///< four-point instead of two-point calibration
    /// As StationConfig::spoiledTwoPoint, for the key of `use4pointstand`: no station's calibration is known.
    QJsonObject spoiledKind;

    QString loadProblem; ///< what load() found wrong at the start, a line each; not stored

    /// The set-up of station 1 or 2.
    StationConfig& station(int number) { return stations[number == 1 ? 0 : 1]; }
    const StationConfig& station(int number) const { return stations[number == 1 ? 0 : 1]; }

    /// How pixels of station 1 or 2 become machine coordinates: the kind that is in force.
    Calibration calibration(int number) const
    {
        const StationConfig& own = station(number);
        return (use4pointstand ? own.fourPointCalibration() : own.twoPointCalibration()).spoiledBy(spoiledKind);
    }

    /// 1 or 2 when `solution` is the solution of that station, 0 otherwise; an empty name is no station's.
    int stationOfSolution(const QString& solution) const;
    /// As stationOfSolution(), by camera key.
    int stationOfCamera(const QString& camKey) const;

    /// Reads the file. A missing or empty file, or one that does not parse, changes nothing; in a good one, keys that
    /// are absent or hold a wrong type get their defaults (four-point objects that are absent or empty keep their
    /// values). Returns false with file, place and reason in `problems` when something in the file is wrong; where an
    /// answer would rest on it, the station's calibration is not usable, see StationConfig::spoiledTwoPoint.
    bool load(QString* problems = nullptr);

    /// Replaces the file in one step, all keys in their fixed order. A present file that does not parse, or
    /// holds what the new one does not, is kept beside it. Returns false with the reason when the file cannot be
    /// written; the old one is then unchanged.
    bool save(QString* error = nullptr);

    /// The file as save() would write it now.
    QByteArray text();

    /// Every key of the file, in its order; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        StationConfig& first = stations[0];
        StationConfig& second = stations[1];
        visitor.setting("station_camkey_1", first.camKey, QString());
        visitor.setting("station_camkey_2", second.camKey, QString());
        visitor.setting("station_solution_1", first.solution, QString());
        visitor.setting("station_solution_2", second.solution, QString());
        visitor.field("station_runModel_1", first.runModel, QString());
        visitor.field("station_runModel_2", second.runModel, QString());
        visitor.field({CalibrationKeys::swapXY, 1}, first.swapXY, false);
        visitor.field({CalibrationKeys::swapXY, 2}, second.swapXY, false);
        visitor.setting("use_clear_protect", useClearProtect, false);
        visitor.setting("onlineMode", onlineMode, false);
        first.twoPoint.visit(visitor, 1);
        second.twoPoint.visit(visitor, 2);
        visitor.field("pointCircle", pointCircle, 20);
        visitor.setting("trigerFilter", trigerFilter, 1000, {0, 600000});
        visitor.setting(CalibrationKeys::useFourPoint, use4pointstand, false);
        visitor.object({CalibrationKeys::fourPoint, 1}, [&](auto& inner) { first.fourPoint.visit(inner); });
        visitor.object({CalibrationKeys::fourPoint, 2}, [&](auto& inner) { second.fourPoint.visit(inner); });
    }

private:
    /// Takes what keeps stations from a calibration from a file that was just read; returns a line for each station.
    QStringList noteSpoiled(const QJsonObject& file, const QJsonObject& wrong);
};
