#include "workflow/CellResultStore.h"

#include "config/ksSysConfig.h"
#include "db/ResultRecorder.h"
#include "db/archive/ImageArchive.h"

namespace {

/// A result of no station has no switch of its own and is not archived.
bool isOn(const bool (&switches)[2], int station)
{
    return (station == 1 || station == 2) && switches[station - 1];
}

} // namespace

CellResultStore::CellResultStore(const ksSysConfig& settings, ImageArchive& archive, ResultRecorder& recorder)
    : m_settings(settings)
    , m_archive(archive)
    , m_recorder(recorder)
{
}

QString CellResultStore::saveSourceImage(int station, const QString& model, const QImage& image)
{
    return isOn(m_settings.saveSrcImage, station) ? m_archive.save(station, model, image, ImageArchive::Source)
                                                  : QString();
}

QString CellResultStore::saveResultImage(int station, const QString& model, const QImage& image)
{
    return isOn(m_settings.saveRltImage, station) ? m_archive.save(station, model, image, ImageArchive::Result)
                                                  : QString();
}

void CellResultStore::insertResult(const StationResult& result)
{
    m_recorder.record(result);
}
