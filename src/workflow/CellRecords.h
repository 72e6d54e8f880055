#pragma once

#include <QObject>

#include <memory>

class CellResultStore;
class IResultStore;
class ImageArchive;
class ModelManager;
class PlcIndexTable;
class QDiskCleanThread;
class QSqliteWheelHubZd;
class ResultRecorder;
class StationDB;
class ksSysConfig;

/// Everything that the cell keeps on its disk, brought up step by step in the order of the start-up. GUI thread.
class CellRecords : public QObject
{
    Q_OBJECT

public:
    /// `home`: without a separator at its end. `settings` outlive the records.
    CellRecords(const QString& home, const ksSysConfig& settings, QObject* parent = nullptr);
    /// Stops the cleaners and writes what still waits.
    ~CellRecords() override;

    /// Makes the archive's folders, and starts a cleaner for each.
    void prepareImageFolders();
    /// Opens "\\DBFiles\\Pellix.db" below the home; a file that cannot be used is kept aside and a fresh one begun.
    void openResultDatabase();
    /// Opens the model library, and brings it and the index tables into agreement.
    void openModelLibrary(PlcIndexTable& indices, const QStringList& stations);

    /// Where results go; present once the result database was opened.
    IResultStore* store() const;
    ImageArchive& archive() { return *m_archive; }
    /// Null until the model library was opened.
    ModelManager* models() { return m_models.get(); }

private:
    std::unique_ptr<QDiskCleanThread> startCleaner(const QString& root, bool byAge) const;

    const QString m_home;
    const ksSysConfig& m_settings;
    std::unique_ptr<ImageArchive> m_archive;
    std::unique_ptr<StationDB> m_results;
    std::unique_ptr<ResultRecorder> m_recorder;
    std::unique_ptr<CellResultStore> m_store;
    std::unique_ptr<QSqliteWheelHubZd> m_library;
    std::unique_ptr<ModelManager> m_models;
    std::unique_ptr<QDiskCleanThread> m_sourceCleaner;
    std::unique_ptr<QDiskCleanThread> m_resultCleaner;
};
