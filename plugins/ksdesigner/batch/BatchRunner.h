#pragma once

#include "BatchRow.h"
#include "common/Background.h"
#include "common/ImageFile.h"
#include "run/TaskRunner.h"

#include <QMap>
#include <QObject>
#include <QStringList>

/// Runs all images of a folder with one or two recipes, in the order of their names. One task at a time is with the
/// engine, so that a trigger of the running cell never waits for more than that; files are read a little ahead.
class BatchRunner : public QObject
{
    Q_OBJECT

public:
    struct Plan
    {
        QString folder;
        Recipe first;
        Recipe second;
        bool compare = false; ///< whether the second is run
    };

    /// `runner` outlives this object.
    explicit BatchRunner(TaskRunner* runner, QObject* parent = nullptr);

    bool isRunning() const { return m_running; }
    /// Takes the place of a plan that is under way.
    void start(const Plan& plan);
    /// Drops what is under way; finished() follows at once.
    void stop();

signals:
    /// The folder was listed.
    void counted(int images);
    /// In the order of the files' names.
    void rowDone(const BatchRow& row);
    /// All images were run, or the run was stopped.
    void finished();

private:
    void takeFiles(const QStringList& files);
    void readAhead();
    void takeFile(int index, const ImageFile& file);
    void runNext();
    void runFirst(const QImage& image);
    void runSecond(const QImage& image);
    void complete();
    void finish();

    TaskRunner* m_runner;
    Plan m_plan;
    QStringList m_files;
    QMap<int, ImageFile> m_ready; ///< read, and not yet run
    BatchRow m_row;               ///< in the engine
    int m_next = 0;               ///< index of the next file to run
    int m_asked = 0;              ///< index of the next file to read
    quint64 m_round = 0;          ///< what belongs to an earlier round is dropped
    bool m_running = false;
    bool m_busy = false; ///< a task is with the engine
    Background m_background;
};
