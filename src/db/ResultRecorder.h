#pragma once

#include "common/Scheduler.h"
#include "db/WaitingRows.h"
#include "db/log/LogLine.h"

#include <QHash>
#include <QVector>

#include <deque>

/// Sees to it that the row of every answered part gets into the database: a row that it refuses for the moment (disk
/// full, folder gone or read-only, another program writing) waits and goes in, in its order and with its own time, when
/// it can. Meanwhile it stands in a file beside the database, from which it goes into the database at the next start if
/// the program ends or dies before. A fault is logged when it begins and when it is over. GUI thread.
class ResultRecorder : public QObject
{
    Q_OBJECT

public:
    struct Rules
    {
        int maxWaiting = 10000; ///< rows; beyond, the oldest are given up
        int retryMs = 1000;     ///< between two attempts
        Scheduler* scheduler = &Scheduler::system();
    };

    /// The database, which may not be open yet, is the caller's and outlives the recorder.
    explicit ResultRecorder(StationDB& database, QObject* parent = nullptr);
    ResultRecorder(StationDB& database, Rules rules, QObject* parent = nullptr);

    /// Tries once more; what still waits goes to the file, or is logged as lost.
    ~ResultRecorder() override;

    /// Records a result, of this moment unless it says when. Characters that a statement cannot carry are replaced.
    /// `picture`: the path of a picture that is being written; the row names it once it is saved, and never when it is
    /// not.
    void record(const StationResult& result, const QString& picture = {});
    void onPictureEnded(const QString& path, bool saved);

    int waiting() const { return static_cast<int>(m_waiting.size()); }
    /// Whether rows of a process before still wait.
    bool holdsEarlier() const;
    int givenUp() const { return m_givenUp; } ///< since the present fault began

signals:
    /// An attempt to write what waits has ended; so many rows still wait.
    void retried(int waiting);

private:
    struct Row : WaitingRow
    {
        QString picture;      ///< that is being written
        bool spilled = false; ///< from the file, and perhaps in the database already
    };
    struct Named
    {
        qint64 row;
        QDateTime time;
    };

    /// Writes what waits, as long as it goes in; takes at most some milliseconds of the thread at a time.
    void retry();
    bool insert(const Row& row);
    int countAlike(const Row& row);
    void enterPictures();
    void fillInParts();
    void readFile();
    /// All rows that wait; without any the file goes. `error` may be null.
    bool writeFile(QString* error = nullptr);
    void endWaiting();
    /// For retry(); gives up the oldest beyond the limit.
    void keep(Row row);

    StationDB& m_database;
    const Rules m_rules;
    std::deque<Row> m_waiting;
    WaitingRowsFile m_file;
    QHash<QString, Named> m_pictures;             ///< rows whose picture is being written
    QVector<QPair<QString, Named>> m_toBeEntered; ///< saved pictures, for the database
    QDateTime m_moment;                           ///< of the last row
    QVector<QStringList> m_ofMoment;              ///< what tells apart the rows of that moment
    int m_givenUp = 0;
    FaultNotice m_fault;
    std::unique_ptr<Scheduler::Timer> m_retry;
    std::unique_ptr<Scheduler::Timer> m_fillIn;
};
