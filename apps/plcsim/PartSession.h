#pragma once

#include "PartFeeder.h"
#include "SimOptions.h"

#include <memory>

class PlcLine;

/// One run with --parts: waits for the program, feeds the parts, tries the refusals, and reports.
class PartSession : public QObject
{
    Q_OBJECT

public:
    PartSession(PlcLine& line, SimOptions options);
    ~PartSession() override;

    /// Reads folders and calibration; false with the reason when the run cannot begin. finished() follows a true.
    bool start(QString* error);
    /// Ends the run early: reports what was fed.
    void stop();

signals:
    /// 0 when every part was answered as it should be, otherwise 1.
    void finished(int exitCode);

private:
    /// Reads what the options name, before anything is sent.
    bool prepare(std::array<ImageCycle, 2>* images, QString* error) const;
    void onFrame(const SComFrame& frame);
    /// The program is there: its first heartbeat begins the run.
    void onHeartbeat();
    void onNoProgram();
    void onPartDone(PartRow row);
    void afterParts();
    /// The program's timing lines may come a little later than its last answer.
    void afterRefusals();
    void report();
    bool writeJson() const;

    PlcLine& m_line;
    const SimOptions m_options;
    TriggerExchange m_exchange;
    std::unique_ptr<PartFeeder> m_feeder;
    RefusalProbe m_probe;
    RoadLog m_road;
    PartReport m_report;
    QTimer m_startDeadline;
    bool m_begun = false;   ///< the program is there
    bool m_stopped = false; ///< ended early
};
