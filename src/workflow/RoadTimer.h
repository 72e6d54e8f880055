#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QQueue>

/// Times the road from a trigger to its reply, for those who measure: with the logging category "valvecell.road" on,
/// one debug line a reply, "station=1 engine_ms=4.213 capture_ms=15.402 total_ms=21.210 rss_kib=123456". Off by
/// default, and then it costs nothing. GUI thread.
class RoadTimer : public QObject
{
    Q_OBJECT

public:
    explicit RoadTimer(QObject* parent = nullptr);

public slots:
    void onCaptureStarted(int station);
    void onImageArrived(int station);
    void onReplied(int station, double engineMs);

private:
    struct Part
    {
        qint64 triggered = 0; ///< nanoseconds
        qint64 captured = 0;
    };

    /// Null when nobody measures, and for a station other than 1 and 2.
    QQueue<Part>* parts(int station);

    QElapsedTimer m_clock;
    QQueue<Part> m_parts[2]; ///< in hand, oldest first
};
