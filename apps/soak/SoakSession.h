#pragma once

#include "CellFeeder.h"
#include "FaultDriver.h"
#include "NetworkCameras.h"
#include "SoakReport.h"

#include <QElapsedTimer>

#include <memory>

/// One soak: the program in its home, the PLC's end of its line, and what goes wrong, until the time or the kills are
/// over; then the report.
class SoakSession : public QObject
{
    Q_OBJECT

public:
    /// `home` has been prepared.
    SoakSession(SoakOptions options, const QString& home);

    /// False with the reason when it cannot begin; finished() follows a true.
    bool start(QString* error);
    /// Ends early; what there was until then is reported.
    void stop();

    const SoakReport& report() const { return m_report; }

signals:
    void finished();
    void happened(const QString& text);

private:
    void onFrame(const SComFrame& frame);
    /// Its heartbeat is there, after its start or on a new line.
    void onReady();
    void onAnswered();
    void kill();
    void cut(int ms);
    void onEnded(int exitCode, QProcess::ExitStatus status);
    void onPluggedIn();
    void onSecond();
    void readMemory();
    /// No more parts and faults; the program ends when all is answered.
    void windUp();
    void windUpFurther();
    void finish();
    CellFeeder::Pace pace() const;

    const SoakOptions m_options;
    const QString m_home;
    SoakReport m_report;
    PlcLine m_line;
    TriggerLedger m_ledger;
    NetworkCameras m_cameras;
    CellProcess m_program;
    FaultDriver m_faults;
    RecordsAudit m_audit;
    std::unique_ptr<CellFeeder> m_feeder;
    QTimer m_second;
    QTimer m_killSoon;
    QElapsedTimer m_since;
    QVector<qint64> m_killsMs;
    SoakReport::Memory m_memory; ///< of the present run
    int m_answers = 0;           ///< of the present run
    int m_secondsToWait = 0;     ///< for what should come by itself
    int m_secondsOfIdleness = 0; ///< after a burst
    bool m_ready = false;        ///< its heart beats on the present line
    bool m_started = false;      ///< since it was started, it has been ready once
    bool m_flooded = false;
    bool m_killing = false;
    bool m_windingUp = false;
    bool m_terminated = false;
};
