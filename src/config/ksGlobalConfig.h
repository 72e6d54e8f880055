#pragma once

#include "config/StationConfig.h"
#include "config/ks_singleton_base.h"

class QJsonObject;

/// The station-level set-up of the cell, kept in "/user/globalConfig.json" below the home. GUI thread.
///
/// Numbers that JSON cannot carry (NaN, infinity) are written as the texts "nan", "inf" and "-inf" and read back as
/// what they were.
class ksGlobalConfig : public ks_singleton_base<ksGlobalConfig>
{
public:
    std::array<StationConfig, 2> stations;
    bool useClearProtect = false; ///< online: refuse the trigger of a station without a valid model
    bool onlineMode = false;      ///< false: model-index frames are ignored and every trigger captures
    int pointCircle = 20;         ///< diameter of the point markers in the calibration dialogs, image pixels
    int trigerFilter = 1000;      ///< milliseconds in which a further trigger of a station is dropped; 0 drops none
    bool use4pointstand = false;  ///< four-point instead of two-point calibration

    /// The set-up of station 1 or 2.
    StationConfig& station(int number) { return stations[number == 1 ? 0 : 1]; }
    const StationConfig& station(int number) const { return stations[number == 1 ? 0 : 1]; }

    /// How pixels of station 1 or 2 become machine coordinates: the kind that is in force.
    Calibration calibration(int number) const
    {
        return use4pointstand ? station(number).fourPointCalibration() : station(number).twoPointCalibration();
    }

    /// 1 or 2 when `solution` is the solution of that station, 0 otherwise; an empty name is no station's.
    int stationOfSolution(const QString& solution) const;
    /// As stationOfSolution(), by camera key.
    int stationOfCamera(const QString& camKey) const;

    /// Reads the file. A missing or empty file, or one that does not parse, changes nothing; in a good one, keys that
    /// are absent or hold a wrong type get their defaults (four-point objects that are absent or empty keep their
    /// values). Returns false with file, place and reason in `problems` when something in the file is wrong.
    bool load(QString* problems = nullptr);

    /// Replaces the file in one step, all keys in their fixed order. A present file that does not parse is kept beside
    /// it. Returns false with the reason when the file cannot be written; the old one is then unchanged.
    bool save(QString* error = nullptr);

    /// The file as save() would write it now.
    QByteArray text();

private:
    template <typename Visitor>
    void visit(Visitor& visitor);
};
