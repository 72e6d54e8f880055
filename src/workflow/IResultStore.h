#pragma once

#include <QString>

class QImage;
struct StationResult;

/// Where results go after the PLC has its answer. GUI thread; every operation returns at once.
class IResultStore
{
public:
    virtual ~IResultStore() = default;

    /// Archives an image below the station's and the model's folder if that is switched on for the station and for
    /// parts that were `found` or not. Returns the path under which it will lie, relative to the home; empty when it is
    /// not archived.
    virtual QString saveSourceImage(int station, const QString& model, const QImage& image, bool found) = 0;
    virtual QString saveResultImage(int station, const QString& model, const QImage& image, bool found) = 0;

    virtual void insertResult(const StationResult& result) = 0;
};
