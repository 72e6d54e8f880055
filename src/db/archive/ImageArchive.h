#pragma once

#include "common/Scheduler.h"
#include "db/log/LogLine.h"

#include <QImage>
#include <QObject>

#include <deque>

class SaveImgThread;

/// The image archive below the home: "/DBFiles/Images" for result images, "/DBFiles/SrcImages" for source images, and
/// in each date, station and model; "/DBFiles/FailedImages" and "/DBFiles/FailedSrcImages" likewise for those that are
/// kept for a time of their own. Images are encoded and written by threads of their own, one each. GUI thread, on
/// which no image is encoded, copied or written; only folders are made there.
class ImageArchive : public QObject
{
    Q_OBJECT

public:
    enum Kind { Source, Result };
    enum Keep { AsOthers, AsFailures };

    struct Rules
    {
        int maxWaiting = 200;                  ///< images not yet on the disk; beyond, a new one is given up
        qint64 maxBytes = 512LL * 1024 * 1024; ///< of their pixels, as soon as more than one waits
        int maxRunning = 2;                    ///< threads that write at the same time; the other images wait for one
        Scheduler* scheduler = &Scheduler::system();
    };

    explicit ImageArchive(const QString& home, QObject* parent = nullptr);
    ImageArchive(const QString& home, Rules rules, QObject* parent = nullptr);

    /// Writes what still waits.
    ~ImageArchive() override;

    /// Makes the two folders of the archive for images that are kept so; false when one of them cannot be made.
    bool prepare(Keep keep = AsOthers);

    /// Hands an image over for saving, and returns its path below the home, such as
    /// "/DBFiles/Images/2024-05-01/Station1/W18/2024_05_01_123456789.jpg". A null image has a path too, but no file.
    /// Empty when the image is given up since too many wait. Pixels that the image only refers to must stay until it is
    /// saved.
    QString save(int station, const QString& subFolder, const QImage& image, Kind kind, Keep keep = AsOthers);

    /// Whether what becomes of the image that save() gave this path is still open.
    bool isWaiting(const QString& path) const { return holds(m_home + path); }

    int waiting() const { return static_cast<int>(m_waiting.size()) + m_running.size(); }
    int givenUp() const { return m_givenUp; } ///< since the start
    int failed() const { return m_failed; }   ///< images that could not be written, since the start

    bool isUnwritable() const { return m_unwritable.lasts(); } ///< the last image could not be written

    static QString folderOf(Kind kind, Keep keep = AsOthers);

signals:
    /// An image lies under this absolute path.
    void saved(const QString& path);
    /// What became of an image that save() gave this path below the home.
    void ended(const QString& path, bool good);

private:
    /// A file name of this moment that neither an image on the disk nor one that waits has.
    QString freeName(const QString& folder) const;
    bool holds(const QString& path) const;
    bool isFull(const QImage& another) const;
    /// Lets the oldest image be written, if fewer threads run than may.
    void startNext();
    /// Without threads: writes the oldest that was started.
    void writeHere();
    void onEnded(SaveImgThread* thread);
    /// Success or failure of an image whose thread has ended.
    void count(const SaveImgThread& thread);

    const QString m_home;
    const Rules m_rules;
    std::deque<SaveImgThread*> m_waiting;
    QList<SaveImgThread*> m_running;
    qint64 m_bytes = 0;     ///< of the images that wait
    qint64 m_peakBytes = 0; ///< since none waited
    int m_givenUp = 0;
    int m_failed = 0;
    FaultNotice m_crowded;
    FaultNotice m_unwritable;
    std::unique_ptr<Scheduler::Timer> m_writeHere;
};
