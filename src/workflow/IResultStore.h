#pragma once

#include <QImage>
#include <QString>

/// One result as it is recorded.
struct StationResult
{
    double angle = 0;        ///< degrees
    int errorType = 0;       ///< the engine's error code
    double matchScore = 0;   ///< score times 100
    QString resultTip;       ///< short text of the engine
    QString threshBenchMark; ///< station key: "number_model"
    QString stationName;     ///< "Station_number"
    QString value1;          ///< path of the saved result image; empty when it was not saved
    QString value2;          ///< the station key again
    QString value3;          ///< free
};

/// Where results go after the PLC has its answer. GUI thread; every operation returns at once.
class IResultStore
{
public:
    virtual ~IResultStore() = default;

    /// Archives an image below the station's and the model's folder if that is switched on for the station. Returns
    /// the path under which it will lie, relative to the home; empty when it is not archived.
    virtual QString saveSourceImage(int station, const QString& model, const QImage& image) = 0;
    virtual QString saveResultImage(int station, const QString& model, const QImage& image) = 0;

    virtual void insertResult(const StationResult& result) = 0;
};
