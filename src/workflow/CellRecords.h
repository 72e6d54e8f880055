#pragma once

#include "common/Scheduler.h"
#include "workflow/IResultStore.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

class ClockGuard;
class ImageArchive;
class ModelManager;
class PlcIndexTable;
class QDiskCleanThread;
class QSqliteWheelHubZd;
class ResultRecorder;
class StationDB;
class ksSysConfig;
namespace SystemLog {
class ksLogDB;
}

/// Results to the archive and the result database, as the settings say. GUI thread.
class CellResultStore : public IResultStore
{
public:
    /// All outlive the store.
    CellResultStore(const ksSysConfig& settings, ImageArchive& archive, ResultRecorder& recorder);

    QString saveSourceImage(int station, const QString& model, const QImage& image, bool found) override;
    QString saveResultImage(int station, const QString& model, const QImage& image, bool found) override;
    void insertResult(const StationResult& result) override;
    void setUser(const QString& name) { m_user = name; }

private:
    QString save(int station, const QString& model, const QImage& image, bool found, int kind);

    const ksSysConfig& m_settings;
    ImageArchive& m_archive;
    ResultRecorder& m_recorder;
    QString m_user;
};

/// Everything that the cell keeps on its disk, brought up step by step in the order of the start-up. GUI thread.
class CellRecords : public QObject
{
    Q_OBJECT

public:
    /// The state of the disk and the databases, at the moment of asking.
    struct Health
    {
        qint64 freeMiB = -1;   ///< of the archive's drive, as its cleaner last saw it; -1: not known
        qint64 wantedMiB = 0;  ///< that are to stay free
        QDateTime clockJump;   ///< to which time the clock jumped, so that nothing goes by its age; not valid: did not
        int imagesGivenUp = 0; ///< since the start
        bool imagesUnwritable = false;
        int resultsWaiting = 0; ///< rows that the database does not take at present
        QString libraryError;   ///< why the model library cannot be used; empty when it can
        QStringList movedAside; ///< under which names files that could not be used were kept
    };

    /// `home`: without a separator at its end. `settings` and `scheduler` outlive the records.
    CellRecords(const QString& home, const ksSysConfig& settings, Scheduler& scheduler, QObject* parent = nullptr);
    /// Stops the cleaners and writes what still waits.
    ~CellRecords() override;

    /// Makes the archive's folders, and starts a cleaner for each.
    void prepareImageFolders();
    /// Gives the cleaners and the thinning of the records what the settings hold now; the archive's switches act by
    /// themselves.
    void applySettings();
    /// Somebody has looked at a clock that jumped: the cleaners go on.
    void acceptClock();
    /// Whether images are kept for a day only, since space was low once.
    bool isKeepingShortened() const;
    /// Whose lines are kept as long as the results; outlives the records. Before openResultDatabase().
    void setLog(SystemLog::ksLogDB* log) { m_log = log; }
    /// Opens "\\DBFiles\\Pellix.db" below the home; a file that cannot be used is kept aside and a fresh one begun.
    void openResultDatabase();
    /// Opens the model library, and brings it and the index tables into agreement.
    void openModelLibrary(PlcIndexTable& indices, const QStringList& stations);

    /// Whether all rows of the program's last run are in the database. After openResultDatabase().
    bool hasEarlierRows() const;
    /// Where results go; present once the result database was opened.
    IResultStore* store() const;
    /// Who is logged in, for the rows that follow; empty for nobody. After openResultDatabase().
    void setUser(const QString& name);
    ImageArchive& archive() { return *m_archive; }
    Health health() const;
    /// Null until the model library was opened.
    ModelManager* models() { return m_models.get(); }

signals:
    /// Rows that waited were tried once more.
    void retried();

private:
    /// What sweeps one of the archive's folders.
    struct Cleaner
    {
        int kind; ///< as ImageArchive has them
        int keep;
        std::unique_ptr<QDiskCleanThread> thread;
    };
    void startCleaners(int keep);
    /// Folders of their own, once such images are, or were, kept for another time.
    void startFailureCleaners();
    bool cleansByAge(const Cleaner& cleaner) const;
    int daysOf(const Cleaner& cleaner) const;
    /// Without threads: a pass of all cleaners.
    void clean();
    /// A step at a time, unless rows wait.
    void thin();
    void thinAsSet();
    /// Of all that deletes by age.
    QVector<ClockGuard*> clocks() const;
    /// A clock that runs before the last row, or before this program was made, was wrong at the start already.
    void checkClock();
    void openLibrary();
    void lookAfterLibrary();

    const QString m_home;
    const ksSysConfig& m_settings;
    Scheduler& m_scheduler;
    std::unique_ptr<ImageArchive> m_archive;
    std::unique_ptr<StationDB> m_results;
    std::unique_ptr<ResultRecorder> m_recorder;
    std::unique_ptr<CellResultStore> m_store;
    std::unique_ptr<QSqliteWheelHubZd> m_library;
    QString m_libraryError;
    std::unique_ptr<ModelManager> m_models;
    std::vector<Cleaner> m_cleaners;
    std::unique_ptr<Scheduler::Timer> m_cleaning;
    std::unique_ptr<Scheduler::Timer> m_thinning;
    SystemLog::ksLogDB* m_log = nullptr;
    std::unique_ptr<Scheduler::Timer> m_lookAfterLibrary;
    int m_libraryOpenings = 0; ///< at the last look
};
