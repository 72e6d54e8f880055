#pragma once

#include "workflow/IResultStore.h"

class ImageArchive;
class ResultRecorder;
class ksSysConfig;

/// Results to the archive and the result database, as the settings say. GUI thread.
class CellResultStore : public IResultStore
{
public:
    /// All outlive the store.
    CellResultStore(const ksSysConfig& settings, ImageArchive& archive, ResultRecorder& recorder);

    QString saveSourceImage(int station, const QString& model, const QImage& image) override;
    QString saveResultImage(int station, const QString& model, const QImage& image) override;
    void insertResult(const StationResult& result) override;

private:
    const ksSysConfig& m_settings;
    ImageArchive& m_archive;
    ResultRecorder& m_recorder;
};
