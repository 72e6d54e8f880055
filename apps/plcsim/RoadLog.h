#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <optional>

/// The program's own timing of one part.
struct RoadTiming
{
    int station = 0;
    double engineMs = 0;
    double captureMs = 0;
    double totalMs = 0;
    qint64 rssKib = 0; ///< resident memory of the program
};

/// The program's timing lines in the file that its standard error goes to.
class RoadLog : public QObject
{
    Q_OBJECT

public:
    explicit RoadLog(const QString& path);

    /// `valvecell.road: station=1 engine_ms=4.213 capture_ms=15.402 total_ms=21.210 rss_kib=123456`, with anything
    /// before; nothing for another line.
    static std::optional<RoadTiming> parse(const QString& line);

    /// Lines that stand in the file now belong to no part of this run.
    void begin();
    /// Waits until `count` lines have come or some seconds have passed, then emits collected().
    void collect(int count);

signals:
    void collected(const QVector<RoadTiming>& timings);

private:
    /// All timings since begin(), whenever it is called.
    QVector<RoadTiming> readNew() const;
    void look();

    const QString m_path;
    qint64 m_begin = 0;
    int m_wanted = 0;
    QTimer m_look;
    QElapsedTimer m_since;
};
